#include "settings/AppSettings.h"

#include "platform/SystemSource.h"

#include <QCoreApplication>
#include <QMetaType>

namespace kestrow {

namespace {

struct FlagRow {
    AppSettings::Flag flag;
    const char* key;
    bool defaultValue;
};

constexpr std::array<FlagRow, AppSettings::flagCount> flagRows{{
    {AppSettings::Flag::autoScanOnLaunch, "kestrow.autoScanOnLaunch", true},
    {AppSettings::Flag::thermalGovernorEnabled, "kestrow.thermalGovernorEnabled", true},
    {AppSettings::Flag::reduceDioramaMotion, "kestrow.reduceDioramaMotion", false},
    {AppSettings::Flag::showMenuBarExtra, "kestrow.showMenuBarExtra", true},
    {AppSettings::Flag::notifyOnThreshold, "kestrow.notifyOnThreshold", true},
    {AppSettings::Flag::targetUvPython, "kestrow.targetUvPython", true},
    {AppSettings::Flag::targetDockerVM, "kestrow.targetDockerVM", true},
    {AppSettings::Flag::targetXcode, "kestrow.targetXcode", true},
    {AppSettings::Flag::targetAIModels, "kestrow.targetAIModels", true},
    {AppSettings::Flag::targetNpmBun, "kestrow.targetNpmBun", true},
    {AppSettings::Flag::targetCargo, "kestrow.targetCargo", true},
    {AppSettings::Flag::targetHomebrew, "kestrow.targetHomebrew", true},
    {AppSettings::Flag::targetSystemCaches, "kestrow.targetSystemCaches", true},
    {AppSettings::Flag::targetBrowserCaches, "kestrow.targetBrowserCaches", true},
    {AppSettings::Flag::permanentPurgeMode, "kestrow.permanentPurgeMode", false},
    {AppSettings::Flag::confirmBeforeClean, "kestrow.confirmBeforeClean", false},
    {AppSettings::Flag::autoSelectReviewRequired, "kestrow.autoSelectReviewRequired", false},
    {AppSettings::Flag::mcpServerEnabled, "kestrow.mcpServerEnabled", true},
    {AppSettings::Flag::autonomousRuleSynthesis, "kestrow.autonomousRuleSynthesis", true},
}};

struct NumberRow {
    AppSettings::Number number;
    const char* key;
    int defaultValue;
};

constexpr std::array<NumberRow, AppSettings::numberCount> numberRows{{
    {AppSettings::Number::junkThresholdGB, "kestrow.junkThresholdGB", 25},
    {AppSettings::Number::lowDiskAlertGB, "kestrow.lowDiskAlertGB", 30},
    {AppSettings::Number::anomalyThresholdMB, "kestrow.anomalyThresholdMB", 500},
}};

constexpr bool rowsInOrder()
{
    for (std::size_t index = 0; index < flagRows.size(); ++index)
        if (static_cast<std::size_t>(flagRows[index].flag) != index)
            return false;
    for (std::size_t index = 0; index < numberRows.size(); ++index)
        if (static_cast<std::size_t>(numberRows[index].number) != index)
            return false;
    return true;
}
static_assert(rowsInOrder());

const QString themeKey = QStringLiteral("kestrow.appTheme");
const QString styleKey = QStringLiteral("kestrow.dioramaStyle");

// A store that keeps no types (an INI file) gives text back; text that spells a value of the
// field's type counts as that value, anything else as absent.
std::optional<bool> asBool(const QVariant& value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (value.typeId() == QMetaType::QString) {
        if (value.toString() == QLatin1String("true"))
            return true;
        if (value.toString() == QLatin1String("false"))
            return false;
    }
    return std::nullopt;
}

std::optional<int> asInt(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::QString: {
        bool ok = false;
        const int number = value.toInt(&ok);
        return ok ? std::optional(number) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

// A list of one entry reads back from an INI file as plain text.
QStringList asStringList(const QVariant& value)
{
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() == QMetaType::QString)
        return {value.toString()};
    return {};
}

} // namespace

AppSettings::AppSettings(std::unique_ptr<QSettings> store, QObject* parent)
    : QObject(parent)
    , m_store(std::move(store))
{
    const QVariant theme = stored(themeKey);
    m_appThemeRaw = theme.typeId() == QMetaType::QString ? theme.toString() : AppTheme(AppTheme::system).rawValue();
    const QVariant style = stored(styleKey);
    m_dioramaStyleRaw =
        style.typeId() == QMetaType::QString ? style.toString() : DioramaStyle(DioramaStyle::classicCity).rawValue();
    for (const FlagRow& row : flagRows)
        m_flags[static_cast<std::size_t>(row.flag)] = asBool(stored(key(row.flag))).value_or(row.defaultValue);
    for (const NumberRow& row : numberRows)
        m_numbers[static_cast<std::size_t>(row.number)] = asInt(stored(key(row.number))).value_or(row.defaultValue);
    m_excludedPaths = asStringList(stored(exclusionsKey));
    applyTheme();
}

AppSettings& AppSettings::shared()
{
    // The platform's per-user place: the user defaults on macOS, an INI file in the XDG config
    // folder elsewhere.
    static AppSettings instance(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                                            QStringLiteral("Kestrow"), QStringLiteral("Kestrow")));
    return instance;
}

QString AppSettings::key(Flag flag)
{
    return QLatin1String(flagRows[static_cast<std::size_t>(flag)].key);
}

QString AppSettings::key(Number number)
{
    return QLatin1String(numberRows[static_cast<std::size_t>(number)].key);
}

QVariant AppSettings::stored(const QString& key) const
{
    return m_store->value(key);
}

void AppSettings::setFlag(Flag flag, bool value)
{
    m_flags[static_cast<std::size_t>(flag)] = value;
    Q_EMIT changed();
    m_store->setValue(key(flag), value);
}

void AppSettings::setNumber(Number number, int value)
{
    m_numbers[static_cast<std::size_t>(number)] = value;
    Q_EMIT changed();
    m_store->setValue(key(number), value);
}

void AppSettings::setAppThemeRaw(const QString& raw)
{
    m_appThemeRaw = raw;
    m_store->setValue(themeKey, raw);
    Q_EMIT changed();
    applyTheme();
}

void AppSettings::setDioramaStyleRaw(const QString& raw)
{
    m_dioramaStyleRaw = raw;
    m_store->setValue(styleKey, raw);
    Q_EMIT changed();
}

void AppSettings::addExclusion(const QString& path)
{
    const QString trimmed = path.trimmed();
    if (trimmed.isEmpty() || m_excludedPaths.contains(trimmed))
        return;
    m_excludedPaths.append(trimmed);
    m_store->setValue(exclusionsKey, m_excludedPaths);
    Q_EMIT changed();
}

void AppSettings::removeExclusion(int index)
{
    if (index < 0 || index >= m_excludedPaths.size())
        return;
    m_excludedPaths.removeAt(index);
    m_store->setValue(exclusionsKey, m_excludedPaths);
    Q_EMIT changed();
}

void AppSettings::removeExclusion(const QString& path)
{
    m_excludedPaths.removeAll(path);
    m_store->setValue(exclusionsKey, m_excludedPaths);
    Q_EMIT changed();
}

std::set<ScanTarget> AppSettings::disabledScanTargets() const
{
    std::set<ScanTarget> disabled;
    const auto firstTarget = static_cast<std::size_t>(Flag::targetUvPython);
    for (const ScanTarget target : ScanTarget::allCases())
        if (!m_flags[firstTarget + static_cast<std::size_t>(static_cast<ScanTargetValue>(target))])
            disabled.insert(target);
    return disabled;
}

ScanTargetFilter AppSettings::scanTargetFilter(const QString& homeURL) const
{
    return ScanTargetFilter(disabledScanTargets(), m_excludedPaths, homeURL);
}

std::shared_ptr<ThermalGovernor> AppSettings::makeThermalGovernor() const
{
    if (thermalGovernorEnabled())
        return ThermalGovernor::makeDefault();
    return ThermalGovernor::unrestricted(SystemSource::current()->activeProcessorCount());
}

void AppSettings::applyTheme(std::optional<AppTheme> theme)
{
    if (!QCoreApplication::instance())
        return;
    const std::optional<ColorScheme> scheme = theme.value_or(appTheme()).colorScheme();
    QMetaObject::invokeMethod(
        this,
        [this, scheme] {
            if (m_appliedColorScheme == scheme)
                return;
            m_appliedColorScheme = scheme;
            Q_EMIT appliedColorSchemeChanged();
        },
        Qt::QueuedConnection);
}

QString AppSettings::mcpConfigurationJSON()
{
    return QStringLiteral("{\n"
                          "  \"mcpServers\": {\n"
                          "    \"kestrow\": {\n"
                          "      \"command\": \"/usr/local/bin/kestrow\",\n"
                          "      \"args\": [\"mcp\"]\n"
                          "    }\n"
                          "  }\n"
                          "}");
}

} // namespace kestrow
