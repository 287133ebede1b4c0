// pimtlv import and export of e-mails (.eml, mbox), run as a person would.
#include <gtest/gtest.h>

#include <string>

#include "ToolRun.h"

namespace {

using ToolRun::Result;
using ToolRun::Tool;

const std::string kMessage =
    "From: Ann <ann@example.org>\nReceived: from a\nReceived: from b\nSubject: hi\n\nbody\n";

TEST(MimeTool, ImportTellsTheFormatAndReportsLosses) {
    const Result r = Tool("import -", kMessage);  // a header field first: eml
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "warning: <stdin>:2: email 1 (instance 0): Received not carried (2 times)\n");
    EXPECT_FALSE(r.out.empty());
    const Result strict = Tool("import - --strict", kMessage);
    EXPECT_EQ(strict.status, 1);
    EXPECT_TRUE(strict.out.empty());

    // Text read by the fallback charset is said, and --strict refuses it.
    const std::string latin1 = "From: ann@example.org\nSubject: Caf\xE9\n\nx\n";
    EXPECT_EQ(Tool("import -", latin1).err,
              "warning: <stdin>:2: email 1 (instance 0): Subject converted (8-bit text without a "
              "charset, read "
              "as windows-1252)\n");
    EXPECT_EQ(Tool("import - --strict", latin1).status, 1);

    const std::string mbox = "From a Mon Mar  3 09:00:00 2025\n" + kMessage +
                             "\nFrom b Mon Mar  3 09:00:00 2025\n" + kMessage;
    const Result two = Tool("import -", mbox);  // "From " first: mbox
    EXPECT_EQ(two.status, 0);
    EXPECT_NE(two.err.find("<stdin>:11: email 2 (instance 1): Received"), std::string::npos)
        << two.err;
}

TEST(MimeTool, ExportWritesOneMessageOrAnMbox) {
    const Result one = Tool("import -", kMessage);
    const Result eml = Tool("export - --to eml", one.out);
    EXPECT_EQ(eml.status, 0) << eml.err;
    EXPECT_NE(eml.out.find("From: Ann <ann@example.org>\n"), std::string::npos) << eml.out;

    const Result several = Tool("export - --to eml", one.out + one.out);
    EXPECT_EQ(several.status, 2);
    EXPECT_TRUE(several.out.empty());
    EXPECT_NE(several.err.find("2 e-mails"), std::string::npos) << several.err;
    const Result mbox = Tool("export - --to mbox", one.out + one.out);
    EXPECT_EQ(mbox.status, 0);
    EXPECT_EQ(mbox.out.rfind("From ann@example.org ", 0), 0u) << mbox.out;
    EXPECT_NE(mbox.out.find("\nFrom ann@example.org ", 1), std::string::npos);
}

}  // namespace
