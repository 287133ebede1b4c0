// Note: layouts written by the creator, the calls the parser makes for them,
// and the note parser's own texts and leftovers.

#include <gtest/gtest.h>

#include "pimshared/note/TLVNoteCreator.h"
#include "pimshared/note/TLVNoteParser.h"
#include "support/CalendarFamily.h"

using namespace CalendarFamilyTest;
using PimShared::CTLVNoteCreator;
using PimShared::CTLVNoteParser;
using NoteRecorder = Recorder<PimShared::INoteReceiver>;

namespace {

Bytes Note(const std::vector<Bytes>& properties) {
    return Frame(3, 105, 7, properties);
}

}  // namespace

TEST(Note, EveryOperationWritesItsLayoutAndParsesBack) {
    CheckRoundTrips<CTLVNoteCreator, CTLVNoteParser, NoteRecorder>(SharedRows<CTLVNoteCreator>(), 3,
                                                                   105);
}

TEST(Note, Diagnostics) {
    CheckDiagnostics<CTLVNoteParser, NoteRecorder>({
        {"BeginAndEndOnly",
         Note({}),
         {"2:NodeEnd(): [state ParsingStatePropertyContext] Unexpected typeId: 105  Expected: -1 "
          "(current property)",
          "2:NodeEnd(): [state ParsingStatePropertyContext] Unexpected typeId: 3  Expected: -1 "
          "(current property)"},
         {"Begin(7)"}},
        // Refused at its root, then element by element in the begin state.
        {"TaskStream",
         Frame(1, 104, 2, {}),
         {"1:NodeBegin(): [state ParsingStateBegin] Unexpected typeId: 1  Expected: 3 "
          "(TypeIdObjTypeNote)",
          "1:NodeBegin(): [state ParsingStateBegin] Unexpected typeId: 104  Expected: 3 "
          "(TypeIdObjTypeNote)",
          "2:LeafNode(): [state ParsingStateBegin] Unexpected typeId: 10",
          "2:NodeEnd(): [state ParsingStateBegin] Unexpected typeId: 104",
          "2:NodeEnd(): [state ParsingStateBegin] Unexpected typeId: 1"},
         {}},
        // The object state's texts name the component state; the component's
        // end text spells "Vjournal".
        {"ObjectAndComponentTexts",
         N(3, {N(999, {}), S(320, "x"), N(105, {N(215, {N(999, {})})})}),
         {"2:NodeBegin(): [state ParsingStateVJournalContext] Unexpected typeId: 999  Expected: "
          "105 "
          "(TypeIdCompTypeVJournal)",
          "2:NodeEnd(): [state ParsingStateNoteContext] Unexpected typeId: 999  Expected: 3 "
          "(TypeIdObjTypeNote)",
          "2:LeafNode(): [state ParsingStateNoteContext] Unexpected typeId: 320",
          "6:callPropertyCallbackAndResetDataMember(): Unexpected typeId: 999",
          "2:NodeEnd(): [state ParsingStateVJournalContext] Unexpected typeId: 215  Expected: 105 "
          "(TypeIdCompTypeVjournal)"},
         {"End()"}},
        // Event properties are gathered but have no operation in a note.
        {"EventPropertiesGatheredNotDelivered",
         Note({N(215, {S(320, "s")}), N(219, {S(1007, "20260101T000000Z"), S(323, "UTC")}),
               N(210, {S(315, "room")}), N(212, {U8(317, 1)})}),
         {"6:callPropertyCallbackAndResetDataMember(): Unexpected typeId: 219",
          "6:callPropertyCallbackAndResetDataMember(): Unexpected typeId: 210",
          "6:callPropertyCallbackAndResetDataMember(): Unexpected typeId: 212"},
         {"Begin(7)", "Summary('s'nullnull{})", "End()"}},
        {"DueTimeUnimplemented",
         Note({N(215, {S(320, "s")}), N(251, {S(1007, "20260101T000000Z")})}),
         {"4:NodeBegin(): [state ParsingStateVJournalContext] Unimplemented typeId. TypeId: 251."},
         {"Begin(7)", "Summary('s'nullnull{})", "End()"}},
        {"StatusCodeAndInstanceName",
         N(3, {N(105, {S(904, "inst"), N(214, {U8(319, 7)})})}),
         {},
         {"InstanceName('inst')", "Status('FINAL'{})", "End()"}},
    });
}

TEST(Note, CreatorFrame) {
    CTLVNoteCreator creator;
    ASSERT_TRUE(creator.Begin(1) && creator.End());
    EXPECT_EQ(Take(creator), FromHex("80 03 0A 80 69 07 90 0A 04 00 00 00 01"));
    EXPECT_FALSE(creator.InstanceName("n"));
}
