// pimtlv import and export with vCard files, run as a person runs them: the
// format told by name or by content, losses as warnings (errors with
// --strict), broken text refused, and streams back to cards.
#include <gtest/gtest.h>

#include <string>

#include "ToolRun.h"

namespace {

using ToolRun::Result;
using ToolRun::Tool;

const std::string kBook =
    std::string(PIMTLV_SAMPLES_DIR) + "/../tests/bridges/fixtures/vcard/addressbook.vcf";

TEST(VcardTool, ImportWarnsOfLossesAndExportWritesTheCardsBack) {
    const Result imported = Tool("import " + kBook);
    EXPECT_EQ(imported.status, 0) << imported.err;
    EXPECT_EQ(imported.err,
              "warning: " + kBook + ":17: contact 2 (instance 1): EMAIL;GROUP not carried\n" +
                  "warning: " + kBook + ":26: contact 3 (instance 2): KIND not carried\n" +
                  "warning: " + kBook + ":28: contact 3 (instance 2): GENDER not carried\n");

    const Result strict = Tool("import --strict " + kBook);
    EXPECT_EQ(strict.status, 1);
    EXPECT_TRUE(strict.out.empty());
    EXPECT_NE(strict.err.find("error: " + kBook + ":26: contact 3 (instance 2): KIND not carried"),
              std::string::npos);

    const Result exported = Tool("export --to vcf", imported.out);
    EXPECT_EQ(exported.status, 0) << exported.err;
    EXPECT_EQ(exported.out.rfind("BEGIN:VCARD\r\nVERSION:3.0\r\nN:M\xC3\xBCller;", 0), 0u);
    std::size_t cards = 0;
    for (std::size_t at = exported.out.find("END:VCARD\r\n"); at != std::string::npos;
         at = exported.out.find("END:VCARD\r\n", at + 1))
        ++cards;
    EXPECT_EQ(cards, 3u);
    const Result again = Tool("import --from vcf", exported.out);
    EXPECT_EQ(again.out, imported.out);
}

TEST(VcardTool, StandardInputIsToldByItsFirstLineAndBrokenTextIsRefused) {
    const Result told = Tool("import", "\xEF\xBB\xBF\r\n\r\nbegin:vcard\r\nFN:A\r\nEND:VCARD\r\n");
    EXPECT_EQ(told.status, 0) << told.err;
    EXPECT_FALSE(told.out.empty());

    const Result broken = Tool("import --from vcf", "BEGIN:VCARD\r\nFN:A\r\n");
    EXPECT_EQ(broken.status, 2);
    EXPECT_NE(broken.err.find("<stdin>:1: the card has no END:VCARD line"), std::string::npos)
        << broken.err;
}

}  // namespace
