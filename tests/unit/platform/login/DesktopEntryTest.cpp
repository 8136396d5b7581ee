#include "platform/linux/login/DesktopEntry.h"

#include <gtest/gtest.h>

#include <utility>

namespace vigilo::platform {
namespace {

TEST(DesktopEntry, hasTheKeysOfItsOwnGroup) {
    const auto entry = parseDesktopEntry("# a comment\n\n[Desktop Entry]\nName = Vigilo \r\n"
                                         "Name[de]=Wächter\nEmpty=\nName=Again\n"
                                         "[Desktop Action x]\nName=Other\nExec=other\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(*entry, (DesktopEntry{{"Name", "Again"}, {"Name[de]", "Wächter"}, {"Empty", ""}}));
}

TEST(DesktopEntry, isNothingWhenTheFileIsNotWellFormed) {
    for (const std::string_view text :
         {"", "# only a comment\n", "Name=Vigilo\n", "[Other]\n[Desktop Entry]\nName=Vigilo\n",
          "[Desktop Entry]\nno key\n", "[Desktop Entry]\n=value\n", "[Desktop Entry\nName=Vigilo\n",
          "[Desktop Entry]\nName=\xff\n"}) {
        EXPECT_FALSE(parseDesktopEntry(text)) << text;
    }
}

TEST(DesktopEntry, undoesTheEscapesOfATextAndKeepsTheWayBack) {
    const auto entry = parseDesktopEntry("[Desktop Entry]\nExec=a\\sb\\n\\t\\r\\\\\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(textValue(*entry, "Exec"), "a b\n\t\r\\");
    EXPECT_EQ(textValue(*entry, "Other"), std::nullopt);
    for (const std::string text : {" a b", "a\nb\tc\rd\\e", "ä", ""}) {
        EXPECT_EQ(textValue({{"Key", escapedText(text)}}, "Key"), text);
        EXPECT_EQ(escapedText(text).find('\n'), std::string::npos);
    }
}

TEST(DesktopEntry, readsListsAndBooleans) {
    const DesktopEntry entry{
        {"OnlyShowIn", "GNOME;a\\;b;;KDE"}, {"Yes", "True"}, {"No", "0"}, {"Neither", "maybe"}};
    EXPECT_EQ(listValue(entry, "OnlyShowIn"), (std::vector<std::string>{"GNOME", "a;b", "KDE"}));
    EXPECT_EQ(listValue(entry, "NotShowIn"), std::vector<std::string>{});
    EXPECT_EQ(booleanValue(entry, "Yes"), true);
    EXPECT_EQ(booleanValue(entry, "No"), false);
    EXPECT_EQ(booleanValue(entry, "Neither"), std::nullopt);
    EXPECT_EQ(booleanValue(entry, "Hidden"), std::nullopt);
}

TEST(ExecLine, namesItsProgram) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
        {"/usr/bin/vigilo --self-test", "/usr/bin/vigilo"},
        {"  vigilo", "vigilo"},
        {"\"/opt/my app/vigilo\" %U", "/opt/my app/vigilo"},
        {R"("/opt/\"a\"\$b\\c/vigilo" x)", R"(/opt/"a"$b\c/vigilo)"},
        {"/opt/100%%/vigilo", "/opt/100%/vigilo"},
        {"sh -c \"vigilo; true\"", "sh"},
        {"", std::nullopt},
        {"   ", std::nullopt},
        {"%U", std::nullopt},
        {"\"/opt/vigilo", std::nullopt},
    };
    for (const auto& [value, program] : cases) {
        EXPECT_EQ(execProgram(value), program) << value;
    }
}

TEST(ExecLine, comesBackAsTheSameProgram) {
    for (const std::string program :
         {"/usr/bin/vigilo", "/opt/my app/vigilo", R"(/opt/"q" 'p' `c` $HOME \x/vigilo)",
          "/opt/100%/vigilo", "/opt/%u 50%/vigilo", "/opt/a\nb\tc/vigilo", "/opt/wächter/vigilo",
          "/opt/a;b#c~/vigilo"}) {
        const auto entry = parseDesktopEntry("[Desktop Entry]\nExec=" + execLine(program) + "\n");
        ASSERT_TRUE(entry) << program;
        EXPECT_EQ(execProgram(textValue(*entry, "Exec").value_or("")), program);
    }
}

TEST(ExecLine, isQuotedOnlyWhereItHasToBe) {
    EXPECT_EQ(execLine("/usr/bin/vigilo"), "/usr/bin/vigilo");
    EXPECT_EQ(execLine("/opt/my app/vigilo"), "\"/opt/my app/vigilo\"");
    EXPECT_EQ(execLine("/opt/$a/vigilo"), R"("/opt/\\$a/vigilo")");
}

} // namespace
} // namespace vigilo::platform
