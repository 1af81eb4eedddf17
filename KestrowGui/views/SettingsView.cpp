#include "views/SettingsView.h"

#include "cleanup/AuditLogger.h"
#include "platform/NativePath.h"

namespace kestrow {

namespace {

QVariantMap heading(const SettingsScreen::Heading& heading)
{
    return {{QStringLiteral("title"), heading.title}, {QStringLiteral("detail"), heading.detail}};
}

QVariantMap switchMap(const SettingsScreen::Switch& flagSwitch)
{
    return {{QStringLiteral("flag"), static_cast<int>(flagSwitch.flag)},
            {QStringLiteral("label"), flagSwitch.label},
            {QStringLiteral("detail"), flagSwitch.detail},
            {QStringLiteral("tag"), flagSwitch.tag},
            {QStringLiteral("isOn"), flagSwitch.isOn}};
}

QVariantList switchList(const std::vector<SettingsScreen::Switch>& switches)
{
    QVariantList list;
    for (const SettingsScreen::Switch& flagSwitch : switches)
        list.append(switchMap(flagSwitch));
    return list;
}

QVariantList choiceList(const std::vector<SettingsScreen::Choice>& choices)
{
    QVariantList list;
    for (const SettingsScreen::Choice& choice : choices)
        list.append(QVariantMap{{QStringLiteral("value"), choice.value},
                                {QStringLiteral("text"), choice.text},
                                {QStringLiteral("isSelected"), choice.isSelected}});
    return list;
}

QVariantMap buttonMap(const SettingsScreen::Button& button)
{
    return {{QStringLiteral("title"), button.title},
            {QStringLiteral("symbol"), button.symbol},
            {QStringLiteral("isEnabled"), button.isEnabled}};
}

} // namespace

SettingsView::SettingsView(AppState& state, SettingsScreen::Clipboard clipboard, Reveal reveal, bool trayAvailable,
                           QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_screen(state, std::move(clipboard))
    , m_reveal(std::move(reveal))
    , m_trayAvailable(trayAvailable)
{
    connect(&m_screen, &SettingsScreen::changed, this, &SettingsView::changed);
}

QVariantMap SettingsView::frame()
{
    QVariantMap map = heading(SettingsScreen::frame());
    map.insert(QStringLiteral("done"), SettingsScreen::doneTitle());
    return map;
}

QVariantList SettingsView::tabs()
{
    QVariantList list;
    for (const SettingsTab tab : SettingsTab::allCases())
        list.append(QVariantMap{{QStringLiteral("title"), tab.rawValue()},
                                {QStringLiteral("heading"), tab.title()},
                                {QStringLiteral("subtitle"), tab.subtitle()}});
    return list;
}

void SettingsView::setSelectedTab(int index)
{
    if (index >= 0 && index < static_cast<int>(SettingsTab::allCases().size()))
        m_screen.setSelectedTab(SettingsTab::allCases()[static_cast<std::size_t>(index)]);
}

QVariantMap SettingsView::general() const
{
    QVariantList themes;
    for (const SettingsScreen::ThemeButton& button : m_screen.themeButtons())
        themes.append(QVariantMap{{QStringLiteral("raw"), button.theme.rawValue()},
                                  {QStringLiteral("title"), button.title},
                                  {QStringLiteral("symbol"), button.symbol},
                                  {QStringLiteral("isSelected"), button.isSelected}});
    QVariantList styles;
    for (const SettingsScreen::StyleCard& card : m_screen.styleCards())
        styles.append(QVariantMap{{QStringLiteral("raw"), card.style.rawValue()},
                                  {QStringLiteral("title"), card.title},
                                  {QStringLiteral("description"), card.description},
                                  {QStringLiteral("symbol"), card.symbol},
                                  {QStringLiteral("isDefault"), card.isDefault},
                                  {QStringLiteral("isSelected"), card.isSelected},
                                  {QStringLiteral("previewAccessibilityText"), card.previewAccessibilityText}});
    return {
        {QStringLiteral("themeSection"), heading(SettingsScreen::themeSection())},
        {QStringLiteral("themeButtons"), themes},
        {QStringLiteral("dioramaSection"), heading(SettingsScreen::dioramaSection())},
        {QStringLiteral("styleCards"), styles},
        {QStringLiteral("behaviourTitle"), SettingsScreen::behaviourTitle()},
        {QStringLiteral("behaviourSwitches"), switchList(m_screen.behaviourSwitches())},
        {QStringLiteral("noTrayNote"),
         m_trayAvailable ? QString()
                         : QStringLiteral("This desktop has no system tray, so the companion can't be shown here. "
                                          "Kestrow runs without it.")},
        {QStringLiteral("alertsSection"), heading(SettingsScreen::alertsSection())},
        {QStringLiteral("alertsNote"), SettingsScreen::alertsNote()},
        {QStringLiteral("junkAlertSwitch"), switchMap(m_screen.junkAlertSwitch())},
        {QStringLiteral("thresholdLabel"), SettingsScreen::thresholdLabel()},
        {QStringLiteral("junkThresholdChoices"), choiceList(m_screen.junkThresholdChoices())},
        {QStringLiteral("lowDiskSection"), heading(SettingsScreen::lowDiskSection())},
        {QStringLiteral("lowDiskChoices"), choiceList(m_screen.lowDiskChoices())},
    };
}

QVariantMap SettingsView::developer() const
{
    return {{QStringLiteral("note"), SettingsScreen::targetsNote()},
            {QStringLiteral("switches"), switchList(m_screen.targetSwitches())}};
}

QVariantMap SettingsView::safety() const
{
    QVariantList modes;
    for (const SettingsScreen::DeletionMode& mode : SettingsScreen::deletionModes())
        modes.append(QVariantMap{{QStringLiteral("title"), mode.title},
                                 {QStringLiteral("mark"), mode.mark},
                                 {QStringLiteral("detail"), mode.detail},
                                 {QStringLiteral("note"), mode.note}});
    const SettingsScreen::AccessRow access = m_screen.accessRow();
    QVariantMap verdict{{QStringLiteral("present"), false}};
    if (const std::optional<SettingsScreen::Verdict> shown = m_screen.verdict())
        verdict = {{QStringLiteral("present"), true},
                   {QStringLiteral("message"), shown->message},
                   {QStringLiteral("passed"), shown->passed},
                   {QStringLiteral("symbol"), shown->symbol}};
    QVariantList entries;
    for (const SettingsScreen::EntryRow& row : m_screen.recentEntryRows())
        entries.append(QVariantMap{{QStringLiteral("kind"), row.kind},
                                   {QStringLiteral("time"), row.time},
                                   {QStringLiteral("items"), row.items}});
    return {
        {QStringLiteral("deletionSection"), heading(SettingsScreen::deletionModeSection())},
        {QStringLiteral("deletionModes"), modes},
        {QStringLiteral("confirmationSwitch"), switchMap(m_screen.confirmationSwitch())},
        {QStringLiteral("accessTitle"), SettingsScreen::accessSectionTitle()},
        {QStringLiteral("accessRow"), QVariantMap{{QStringLiteral("title"), access.title},
                                                  {QStringLiteral("detail"), access.detail},
                                                  {QStringLiteral("symbol"), access.symbol},
                                                  {QStringLiteral("offersSettings"), access.offersSettings}}},
        {QStringLiteral("accessButton"), buttonMap(SettingsScreen::accessButton())},
        {QStringLiteral("accessButtonHelp"), SettingsScreen::accessButtonHelp()},
        {QStringLiteral("auditSection"), heading(SettingsScreen::auditSection())},
        {QStringLiteral("auditLogPath"), SettingsScreen::auditLogPath()},
        {QStringLiteral("verifyButton"), buttonMap(m_screen.verifyButton())},
        {QStringLiteral("revealButton"), buttonMap(SettingsScreen::revealButton())},
        {QStringLiteral("verdict"), verdict},
        {QStringLiteral("recentEntriesTitle"), SettingsScreen::recentEntriesTitle()},
        {QStringLiteral("recentEntries"), entries},
    };
}

QVariantMap SettingsView::agents() const
{
    QVariantList tools;
    for (const SettingsScreen::ToolLine& tool : SettingsScreen::toolLines())
        tools.append(QVariantMap{{QStringLiteral("name"), tool.name}, {QStringLiteral("line"), tool.line}});
    return {
        {QStringLiteral("serverSection"), heading(SettingsScreen::serverSection())},
        {QStringLiteral("serverText"), SettingsScreen::serverText()},
        {QStringLiteral("commandLabel"), SettingsScreen::commandLabel()},
        {QStringLiteral("command"), SettingsScreen::command()},
        {QStringLiteral("copyButton"), buttonMap(m_screen.copyButton())},
        {QStringLiteral("toolsTitle"), SettingsScreen::toolsTitle()},
        {QStringLiteral("tools"), tools},
        {QStringLiteral("selfImprovementTitle"), SettingsScreen::selfImprovementTitle()},
        {QStringLiteral("selfImprovementNote"), SettingsScreen::selfImprovementNote()},
        {QStringLiteral("ruleSynthesisSwitch"), switchMap(m_screen.ruleSynthesisSwitch())},
        {QStringLiteral("sensitivitySection"), heading(SettingsScreen::sensitivitySection())},
        {QStringLiteral("sensitivityChoices"), choiceList(m_screen.sensitivityChoices())},
    };
}

QVariantMap SettingsView::exclusions() const
{
    QVariantList rows;
    for (const SettingsScreen::ExclusionRow& row : m_screen.exclusionRows())
        rows.append(QVariantMap{{QStringLiteral("index"), row.index},
                                {QStringLiteral("path"), NativePath::displayText(row.path)},
                                {QStringLiteral("symbol"), row.symbol},
                                {QStringLiteral("removeSymbol"), row.removeSymbol}});
    return {
        {QStringLiteral("title"), SettingsScreen::exclusionsTitle()},
        {QStringLiteral("addButton"), buttonMap(SettingsScreen::addFolderButton())},
        {QStringLiteral("chooser"), heading(SettingsScreen::folderChooser())},
        {QStringLiteral("empty"), heading(SettingsScreen::noExclusions())},
        {QStringLiteral("emptySymbol"), SettingsScreen::noExclusionsSymbol()},
        {QStringLiteral("rows"), rows},
        {QStringLiteral("note"), SettingsScreen::exclusionsNote()},
        {QStringLiteral("protections"), heading(SettingsScreen::inherentProtections())},
    };
}

void SettingsView::setFlag(int flag, bool on)
{
    if (flag >= 0 && flag < static_cast<int>(AppSettings::flagCount))
        m_state.settings().setFlag(static_cast<AppSettings::Flag>(flag), on);
}

void SettingsView::chooseTheme(const QString& raw)
{
    m_state.settings().setAppThemeRaw(raw);
}

void SettingsView::chooseStyle(const QString& raw)
{
    m_state.settings().setDioramaStyleRaw(raw);
}

void SettingsView::chooseJunkThreshold(int gigabytes)
{
    m_state.settings().setJunkThresholdGB(gigabytes);
}

void SettingsView::chooseLowDiskAlert(int gigabytes)
{
    m_state.settings().setLowDiskAlertGB(gigabytes);
}

void SettingsView::chooseSensitivity(int megabytes)
{
    m_state.settings().setAnomalyThresholdMB(megabytes);
}

void SettingsView::openAccessSettings()
{
    m_state.openFDASettings();
}

void SettingsView::verifyAudit()
{
    m_screen.auditCheck().verifyAuditChain();
}

void SettingsView::revealAuditLog()
{
    m_reveal(AuditLogger::defaultLogFile(m_state.homeURL()));
}

void SettingsView::copyMCPConfiguration()
{
    m_screen.copyMCPConfiguration();
}

void SettingsView::addExclusion(const QUrl& folder)
{
    const QString path = localPath(folder);
    if (!path.isEmpty())
        m_state.settings().addExclusion(path);
}

void SettingsView::removeExclusion(int index)
{
    m_state.settings().removeExclusion(index);
}

void SettingsView::done()
{
    m_screen.done();
}

QString SettingsView::localPath(const QUrl& url)
{
    if (!url.isLocalFile())
        return {};
    return NativePath::decode(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
}

} // namespace kestrow
