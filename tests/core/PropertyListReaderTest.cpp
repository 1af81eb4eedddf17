#include "PropertyListFile.h"
#include "TestHome.h"

#include "platform/FileManager.h"
#include "platform/PropertyListReader.h"

#include <gtest/gtest.h>

#include <QVariantList>
#include <QVariantMap>

using namespace kestrow;
using kestrow::test::PropertyListFile;
using kestrow::test::TestHome;

namespace {

QVariantMap launchJob()
{
    return QVariantMap{
        {QStringLiteral("Label"), QStringLiteral("com.acme.agent")},
        {QStringLiteral("RunAtLoad"), true},
        {QStringLiteral("ProgramArguments"),
         QVariantList{QStringLiteral("/opt/acme/bin/agent"), QStringLiteral("--quiet")}},
        {QStringLiteral("Nice"), -5},
        {QStringLiteral("Ratio"), 0.5},
        {QStringLiteral("Blob"), QByteArray("\x00\x01\xff", 3)},
        {QStringLiteral("Name"), QStringLiteral("Ägent ☂")},
    };
}

} // namespace

TEST(PropertyListReaderTest, ReadsXmlAndBinaryToTheSameValues)
{
    const QVariantMap job = launchJob();
    for (const auto format : {PropertyListFile::Format::xml, PropertyListFile::Format::binary}) {
        const std::optional<QVariant> parsed = PropertyListReader::parse(PropertyListFile::encode(job, format));
        ASSERT_TRUE(parsed.has_value());
        const QVariantMap map = parsed->toMap();
        EXPECT_EQ(map.value(QStringLiteral("Label")).toString(), QStringLiteral("com.acme.agent"));
        EXPECT_EQ(map.value(QStringLiteral("RunAtLoad")).typeId(), QMetaType::Bool);
        EXPECT_TRUE(map.value(QStringLiteral("RunAtLoad")).toBool());
        EXPECT_EQ(map.value(QStringLiteral("ProgramArguments")).toList().value(1).toString(),
                  QStringLiteral("--quiet"));
        EXPECT_EQ(map.value(QStringLiteral("Nice")).toLongLong(), -5);
        EXPECT_DOUBLE_EQ(map.value(QStringLiteral("Ratio")).toDouble(), 0.5);
        EXPECT_EQ(map.value(QStringLiteral("Blob")).toByteArray(), QByteArray("\x00\x01\xff", 3));
        EXPECT_EQ(map.value(QStringLiteral("Name")).toString(), QStringLiteral("Ägent ☂"));
    }
}

TEST(PropertyListReaderTest, RefusesWhatIsNotAPropertyList)
{
    EXPECT_FALSE(PropertyListReader::parse(QByteArray()).has_value());
    EXPECT_FALSE(PropertyListReader::parse(QByteArray("not a plist")).has_value());
    EXPECT_FALSE(PropertyListReader::parse(QByteArray("bplist00\x01\x02\x03", 11)).has_value());
    const QByteArray xml = PropertyListFile::encode(launchJob(), PropertyListFile::Format::xml);
    EXPECT_FALSE(PropertyListReader::parse(xml.left(xml.size() / 2)).has_value());
    const QByteArray binary = PropertyListFile::encode(launchJob(), PropertyListFile::Format::binary);
    EXPECT_FALSE(PropertyListReader::parse(binary.left(binary.size() - 9)).has_value());
}

TEST(PropertyListReaderTest, ReadsOnlyRegularFilesAndDictionaries)
{
    const TestHome home;
    const FileManager files;
    home.writeFile(QStringLiteral("Info.plist"),
                   PropertyListFile::encode(launchJob(), PropertyListFile::Format::binary));
    home.writeFile(QStringLiteral("list.plist"),
                   PropertyListFile::encode(QVariantList{QStringLiteral("a")}, PropertyListFile::Format::xml));
    home.makeSymbolicLink(QStringLiteral("link.plist"), home.path(QStringLiteral("Info.plist")));
    home.makeDirectory(QStringLiteral("folder.plist"));

    const std::optional<QVariantMap> info =
        PropertyListReader::readDictionary(files, home.path(QStringLiteral("Info.plist")));
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(info->value(QStringLiteral("Label")).toString(), QStringLiteral("com.acme.agent"));
    EXPECT_TRUE(PropertyListReader::readFile(files, home.path(QStringLiteral("list.plist"))).has_value());
    EXPECT_FALSE(PropertyListReader::readDictionary(files, home.path(QStringLiteral("list.plist"))).has_value());
    EXPECT_FALSE(PropertyListReader::readFile(files, home.path(QStringLiteral("link.plist"))).has_value());
    EXPECT_FALSE(PropertyListReader::readFile(files, home.path(QStringLiteral("folder.plist"))).has_value());
    EXPECT_FALSE(PropertyListReader::readFile(files, home.path(QStringLiteral("missing.plist"))).has_value());
}
