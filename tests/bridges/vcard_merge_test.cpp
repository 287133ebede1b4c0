// Contact streams merged back onto the cards they came from: what the device
// edited changes, everything else stays as the original wrote it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "bridges/vcard/Vcard.h"

namespace {

using PimBridge::MergedItem;
using PimBridge::MergeOptions;
using PimBridge::MergeResult;
using PimBridge::MergeVcard;

std::string Card(const std::string& version, const std::vector<std::string>& lines) {
    std::string text = "BEGIN:VCARD\r\nVERSION:" + version + "\r\n";
    for (const std::string& l : lines) text += l + "\r\n";
    return text + "END:VCARD\r\n";
}

// The streams a device sends back: its cards as the import writes them.
std::vector<std::uint8_t> Streams(const std::string& deviceText) {
    const PimBridge::ImportResult r = PimBridge::ImportVcard(deviceText.data(), deviceText.size());
    EXPECT_TRUE(r.ok) << r.error;
    return r.streams;
}

// The report in the words the tool prints, items separated by " | ".
std::string Report(const MergeResult& r) {
    std::string s;
    for (const MergedItem& item : r.items)
        (s += s.empty() ? "" : " | ") += PimBridge::Describe(item);
    return s;
}

MergeResult Merge(const std::string& original, const std::string& device,
                  const MergeOptions& options = {}) {
    const std::vector<std::uint8_t> streams = Streams(device);
    MergeResult r =
        MergeVcard(original.data(), original.size(), streams.data(), streams.size(), options);
    EXPECT_TRUE(r.ok) << r.error;
    return r;
}

class VcardMerge : public ::testing::Test {
  protected:
    void SetUp() override { setenv("SOURCE_DATE_EPOCH", "1700000000", 1); }
    void TearDown() override { unsetenv("SOURCE_DATE_EPOCH"); }
};

constexpr const char* kRev = "REV:20231114T221320Z";

struct Rule {
    const char* what;
    const char* version;
    std::vector<std::string> original;
    std::vector<std::string> device;  // as a 3.0 card of the device
    std::vector<std::string> merged;  // empty: the original, byte for byte
    const char* report;
};

TEST_F(VcardMerge, EachRuleOnOneCardInEachVersion) {
    const std::vector<Rule> rules = {
        {"carried and not carried, all unchanged",
         "3.0",
         {"FN:A", "GENDER:F", "item1.TEL;TYPE=cell:1", "item1.X-ABLABEL:mobile",
          "URL;TYPE=work:http://a", "REV:20200101T000000Z"},
         {"FN:A", "item1.TEL;TYPE=cell:1", "item1.X-ABLABEL:mobile", "URL:http://a",
          "REV:20200101T000000Z"},
         {},
         "unchanged"},
        {"a changed value, a removed and an added line; the rest stays",
         "3.0",
         {"FN:A", "GENDER:F", "TEL:1", "TEL:2", "ANNIVERSARY:20000101", "REV:20200101T000000Z"},
         {"FN:B", "TEL:2", "NOTE:new"},
         {"FN:B", "GENDER:F", "TEL:2", "ANNIVERSARY:20000101", kRev, "NOTE:new"},
         "changed: FN changed, TEL removed, NOTE added"},
        {"the group and parameters the contact cannot carry stay on a changed line",
         "3.0",
         {"FN:A", "URL;TYPE=work:http://a", "item2.EMAIL;PID=1:a@b.c"},
         {"FN:A", "URL:http://b", "EMAIL:c@d.e"},
         {"FN:A", "URL;TYPE=work:http://b", "item2.EMAIL;PID=1:c@d.e", kRev},
         "changed: URL changed, EMAIL changed"},
        {"2.1 stays 2.1: bare types, quoted-printable UTF-8",
         "2.1",
         {"FN:A", "TEL;HOME;VOICE:1", "NOTE:x"},
         {"FN:A", "TEL;TYPE=home,voice:1", "NOTE:M\xC3\xBCller\\nzwei"},
         {"FN:A", "TEL;HOME;VOICE:1",
          "NOTE;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:M=C3=BCller=0D=0Azwei", kRev},
         "changed: NOTE changed"},
        {"4.0 stays 4.0: PREF, tel: URIs, data: URIs",
         "4.0",
         {"FN:A", "TEL;VALUE=uri;TYPE=cell;PREF=1:tel:+491", "KIND:individual"},
         {"FN:A", "TEL;TYPE=cell,pref;VALUE=uri:tel:+492", "PHOTO;ENCODING=b;TYPE=image/png:AAEC"},
         {"FN:A", "TEL;TYPE=cell;PREF=1;VALUE=uri:tel:+492", "KIND:individual",
          "PHOTO:data:image/png;base64,AAEC", kRev},
         "changed: TEL changed, PHOTO added"},
    };
    for (const Rule& rule : rules) {
        const std::string original = Card(rule.version, rule.original);
        const MergeResult r = Merge(original, Card("3.0", rule.device));
        EXPECT_EQ(Report(r), rule.report) << rule.what;
        EXPECT_EQ(r.text, rule.merged.empty() ? original : Card(rule.version, rule.merged))
            << rule.what;
    }
}

TEST_F(VcardMerge, ItemsFindTheirCardsByUidThenPosition) {
    // Two cards with UIDs, one without; text outside the cards stays.
    const std::string original = "X-OUTSIDE:before\r\n" + Card("3.0", {"UID:u1", "FN:One"}) +
                                 Card("3.0", {"UID:u2", "FN:Two"}) + Card("3.0", {"FN:Three"}) +
                                 "X-OUTSIDE:after\r\n";
    // The device sends them in another order, the third edited, plus a new one.
    const std::string device = Card("3.0", {"UID:u2", "FN:Two"}) +
                               Card("3.0", {"UID:u1", "FN:One!"}) + Card("3.0", {"FN:Three!"}) +
                               Card("3.0", {"UID:u9", "FN:New"});
    const MergeResult r = Merge(original, device);
    // By UID whatever the position; the card without UID by its position (2).
    EXPECT_EQ(Report(r), "unchanged | changed: FN changed | changed: FN changed | added");
    EXPECT_EQ(r.text, "X-OUTSIDE:before\r\n" + Card("3.0", {"UID:u1", "FN:One!", kRev}) +
                          Card("3.0", {"UID:u2", "FN:Two"}) + Card("3.0", {"FN:Three!", kRev}) +
                          Card("3.0", {"UID:u9", "FN:New"}) + "X-OUTSIDE:after\r\n");
    EXPECT_EQ(r.items[1].uid, "u1");
    EXPECT_FALSE(r.Unchanged());

    // A card no item matches stays as it was; an unchanged stream says so.
    const MergeResult only = Merge(original, Card("3.0", {"UID:u2", "FN:Two"}));
    EXPECT_EQ(Report(only), "unchanged");
    EXPECT_TRUE(only.Unchanged());
    EXPECT_EQ(only.text, original);

    // A UID the import reads as Windows-1252 or decodes from base64 is
    // matched in the form the device sends back, unchanged or edited.
    const std::string read = Card("3.0", {"UID:ab\xE1"
                                          "c",
                                          "FN:Four"}) +
                             Card("3.0", {"UID;ENCODING=b:dTM=", "FN:Five"});
    const std::vector<std::uint8_t> own = Streams(read);
    const MergeResult same = MergeVcard(read.data(), read.size(), own.data(), own.size());
    EXPECT_EQ(Report(same), "unchanged | unchanged");
    EXPECT_EQ(same.text, read);
    const MergeResult edited =
        Merge(read, Card("3.0", {"UID:u3", "FN:Five!"}) + Card("3.0", {"UID:ab\xC3\xA1"
                                                                       "c",
                                                                       "FN:Four!"}));
    EXPECT_EQ(Report(edited), "changed: FN changed | changed: FN changed");
    EXPECT_EQ(edited.text, Card("3.0", {"UID:ab\xE1"
                                        "c",
                                        "FN:Four!", kRev}) +
                               Card("3.0", {"UID;ENCODING=b:dTM=", "FN:Five!", kRev}));
}

TEST_F(VcardMerge, ThreeWayTakesEachSidesChangesAndResolvesConflicts) {
    const std::string base = Card("3.0", {"UID:u", "FN:A", "NOTE:n", "TITLE:t"});
    // The server changed NOTE and TITLE since; the device changed FN and TITLE.
    const std::string original = Card("3.0", {"UID:u", "FN:A", "NOTE:server", "TITLE:server"});
    const std::string device = Card("3.0", {"UID:u", "FN:B", "NOTE:n", "TITLE:device"});
    MergeOptions options;
    options.base = base.data();
    options.baseSize = base.size();
    const MergeResult serverWins = Merge(original, device, options);
    EXPECT_EQ(Report(serverWins), "changed: FN changed; conflict: TITLE, server's value kept");
    EXPECT_EQ(serverWins.text, Card("3.0", {"UID:u", "FN:B", "NOTE:server", "TITLE:server", kRev}));

    options.preferDevice = true;
    const MergeResult deviceWins = Merge(original, device, options);
    EXPECT_EQ(Report(deviceWins),
              "changed: FN changed, TITLE changed; conflict: TITLE, device's value taken");
    EXPECT_EQ(deviceWins.text, Card("3.0", {"UID:u", "FN:B", "NOTE:server", "TITLE:device", kRev}));

    // What the device sent back unchanged changes nothing, whatever the server did.
    const MergeResult none = Merge(original, base, options);
    EXPECT_EQ(Report(none), "unchanged");
    EXPECT_EQ(none.text, original);
}

TEST_F(VcardMerge, RevisionOfAChangedCardIsNowFromTheClock) {
    setenv("SOURCE_DATE_EPOCH", "0", 1);
    const MergeResult r = Merge(Card("3.0", {"FN:A"}), Card("3.0", {"FN:B"}));
    EXPECT_EQ(r.text, Card("3.0", {"FN:B", "REV:19700101T000000Z"}));
}

TEST_F(VcardMerge, BadInputIsAClearErrorOrAFailedItem) {
    const std::vector<std::uint8_t> streams = Streams(Card("3.0", {"FN:A"}));
    const std::string open = "BEGIN:VCARD\r\nFN:A\r\n";
    MergeResult r = MergeVcard(open.data(), open.size(), streams.data(), streams.size());
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.errorLine, 1u);
    EXPECT_NE(r.error.find("END:VCARD"), std::string::npos) << r.error;

    const std::string original = Card("3.0", {"FN:A"});
    const std::uint8_t event[] = {0x80, 0x01, 0x00};
    r = MergeVcard(original.data(), original.size(), event, sizeof event);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("no contact"), std::string::npos) << r.error;

    // A stream cut short would remove what it lost: its card stays.
    std::vector<std::uint8_t> cut = streams;
    cut.pop_back();
    cut[2] = static_cast<std::uint8_t>(cut[2] - 1);
    r = MergeVcard(original.data(), original.size(), cut.data(), cut.size());
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(Report(r), "failed: its stream is malformed; the original is left as it was");
    EXPECT_EQ(r.text, original);
}

}  // namespace
