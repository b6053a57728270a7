#include <cstddef>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <type_traits>

#include "CallListDatabaseAdapterHelper.h"

namespace {

using Helper = CallListDatabaseAdapterHelper;

struct Word {
    const char* name;
    const char* const* constant;
    const char* text;
};

#define WORD(constant, text) \
    { #constant, &Helper::constant, text }

const Word words[] = {
    WORD(XMLHEADER, "<?xml version=\"1.0\" encoding=\"utf-8\"?>"),
    WORD(REASONFORMESSAGE, "ReasonForMessage"),
    WORD(READREQUEST, "read_request"),
    WORD(WRITEREQUEST, "write_request"),
    WORD(DELETEREQUEST, "delete_request"),
    WORD(METHOD, "Method"),
    WORD(METHOD_XML_BEGIN, "<Method>"),
    WORD(METHOD_XML_CLOSE, "</Method>"),
    WORD(ENTRY, "Entry"),
    WORD(VALUE, "Value"),
    WORD(ACTIONTYPE, "ActionType"),
    WORD(UNIQUEIDTODELETE, "UniqueIdToDelete"),
    WORD(TRUE, "True"),
    WORD(FALSE, "False"),
    WORD(DAS_CALLLOG, "CallLog"),
    WORD(DAS_CALLLOG_PHONEBOOK, "CallLogPhoneBook"),
    WORD(DAS_CALLLOGMISSEDCALLS, "CallLogMissedCalls"),
    WORD(DAS_CALLLOGDIALLEDCALLS, "CallLogDialledCalls"),
    WORD(DAS_CALLLOGRECEIVEDCALLS, "CallLogReceivedCalls"),
    WORD(DAS_CALLLOGFORWARDEDCALLS, "CallLogForwardedCalls"),
    WORD(DAS_CALLLOGENABLEDSTATE, "CallLogEnabledState"),
    WORD(CALL_LOG_TYPE_MISSED, "Missed"),
    WORD(GETMISSEDCALLLIST_XML, "getMissedCallList"),
    WORD(MISSEDCALLSCOUNTUPDATE_XML, "missedCallsCountUpdate"),
    WORD(MISSEDCALLSUPDATE_XML, "missedCallsUpdate"),
    WORD(DIALLEDCALLSUPDATE_XML, "dialledCallsUpdate"),
    WORD(RECEIVEDCALLSUPDATE_XML, "receivedCallsUpdate"),
    WORD(FORWARDEDCALLSUPDATE_XML, "forwardedCallsUpdate"),
    WORD(ITEM, "Item"),
    WORD(ITEM_XML_BEGIN, "<Item>"),
    WORD(ITEM_XML_CLOSE, "</Item>"),
    WORD(UNIQUEID, "UniqueId"),
    WORD(ENTRYID, "EntryId"),
    WORD(SURNAME, "Surname"),
    WORD(FIRSTNAME, "Firstname"),
    WORD(PICTURE, "Picture"),
    WORD(PICTURE_CLIP, "PictureClip"),
    WORD(VIEWED, "Viewed"),
    WORD(CATEGORY, "Category"),
    WORD(JSGROUPBY, "JSGroupBy"),
    WORD(LOGLIST, "LogList"),
    WORD(LOGLIST_XML_BEGIN, "<LogList>"),
    WORD(LOGLIST_XML_CLOSE, "</LogList>"),
    WORD(NUMBER, "Number"),
    WORD(NUMBERTYPE, "NumberType"),
    WORD(CONNECTEDNUMBER, "ConnectedNumber"),
    WORD(CONNECTEDNUMBERTYPE, "ConnectedNumberType"),
    WORD(CONNECTEDSURNAME, "ConnectedSurname"),
    WORD(CONNECTEDFIRSTNAME, "ConnectedFirstName"),
    WORD(CONNECTEDNUMBERPRIORITY, "ConnectedNumberPriority"),
    WORD(RESOLVEDNUMBER, "ResolvedNumber"),
    WORD(TIMEDATE, "TimeDate"),
    WORD(DURATION, "Duration"),
    WORD(COMPLETED_ELSEWHERE, "CompletedElsewhere"),
    WORD(TARGETLOG, "TargetLog"),
    WORD(NUMBERPRESENTATION, "NumberPresentation"),
    WORD(NAMEPRESENTATION, "NamePresentation"),
    WORD(DEFLECTNUMBER, "DeflectNumber"),
    WORD(DEFLECTNUMBERTYPE, "DeflectNumberType"),
    WORD(DEFLECTNUMBERPRESENTATION, "DeflectNumberPresentation"),
    WORD(DEFLECTNAME, "DeflectName"),
    WORD(DEFLECTNAMEPRESENTATION, "DeflectNamePresentation"),
    WORD(TIMEFORMAT, "TimeFormat"),
    WORD(TRANSFERTYPE, "TransferType"),
    WORD(GROUPNAME, "GroupName"),
    WORD(GROUPNUMBER, "GroupNumber"),
    WORD(ISBLUETOOTHCALL, "IsBluetoothCall"),
    WORD(CALLBACKNUMBER, "CallBackNumber"),
    WORD(CALLBACKDEVICEID, "CallBackDeviceId"),
    WORD(CALLBACKTYPE, "CallBackType"),
    WORD(CALLBACKTYPENOTYPE, "NOTYPE"),
    WORD(CALLBACKTYPENOREPLY, "NOREPLY"),
    WORD(CALLBACKTYPEBUSY, "BUSY"),
    WORD(CALLBACKSTATE, "CallBackState"),
    WORD(CALLBACKSTATENOSTATE, "NOSTATE"),
    WORD(CALLBACKSTATEACTIVE, "ACTIVE"),
    WORD(CALLBACKSTATESUSPENDED, "SUSPENDED"),
    WORD(IN_ANSWERED, "IN_ANSWERED"),
    WORD(IN_NO_ANSWER, "IN_NO_ANSWER"),
    WORD(IN_BUSY, "IN_BUSY"),
    WORD(IN_GROUP_MISSED, "IN_GROUP_MISSED"),
    WORD(IN_GROUP_CALL, "IN_GROUP_BUSY"),
    WORD(OUT_ANSWERED, "OUT_ANSWERED"),
    WORD(OUT_NO_ANSWER, "OUT_NO_ANSWER"),
    WORD(OUT_BUSY, "OUT_BUSY"),
    WORD(ALLOWED, "ALLOWED"),
    WORD(NOT_ALLOWED, "NOT_ALLOWED"),
    WORD(NOT_AVAILABLE, "NOT_AVAILABLE"),
    WORD(FORM_24, "FORM_24"),
    WORD(FORM_AM, "FORM_AM"),
    WORD(FORM_PM, "FORM_PM"),
    WORD(PRIVATE, "PRIVATE"),
    WORD(MOBILE, "MOBILE"),
    WORD(BUSINESS1, "BUSINESS1"),
    WORD(BUSINESS2, "BUSINESS2"),
    WORD(NO_ICON, "NO_ICON"),
    WORD(TRAN_SOURCE_NUM, "TRANSFER_SOURCE_NUMBER"),
    WORD(TRAN_DEST_NUM, "TRANSFER_DESTINATION_NUMBER"),
    WORD(TRAN_GROUP_NUM, "TRANSFER_GROUP_NUMBER"),
    WORD(PHONEBOOK_UNIQUEID, "UniqueID"),
    WORD(OFFICE, "Office"),
    WORD(OFFICE2, "Office2"),
    WORD(MOBILE_PHONEBOOK, "Mobile"),
    WORD(PRIVATE_PHONEBOOK, "Private"),
    WORD(EMAIL, "Email"),
    WORD(CALLGROUP, "Group"),
    WORD(DEFAULTNUMBER, "DefaultNumber"),
    WORD(COMPANY, "Company"),
    WORD(ADDRESS, "Address"),
    WORD(ADDRESS2, "Address2"),
    WORD(JOBFUNCTION, "JobFunction"),
    WORD(VOICEDIAL, "VoiceDial"),
    WORD(EXTERNALID, "ExternalID"),
    WORD(CONTACTSOURCE, "ContactSource"),
};

#undef WORD

TEST(Vocabulary, HoldsOneHundredAndFourteenTexts) {
    std::set<std::string> names;
    for (const Word& word : words) {
        EXPECT_EQ(std::string(*word.constant), word.text) << word.name;
        names.insert(word.name);
    }
    EXPECT_EQ(names.size(), 114u);
}

TEST(Vocabulary, IsMadeOfConstantPointersToConstantCharacters) {
    EXPECT_TRUE((std::is_same<decltype(Helper::XMLHEADER), const char* const>::value));
    EXPECT_TRUE((std::is_same<decltype(Helper::TRUE), const char* const>::value));
    EXPECT_TRUE((std::is_same<decltype(Helper::CONTACTSOURCE), const char* const>::value));
}

// Taken while static objects are constructed, in whatever order: the texts need no start-up code.
const std::string takenAtStartUp = std::string(Helper::LOGLIST) + Helper::XMLHEADER + Helper::TRAN_GROUP_NUM;

TEST(Vocabulary, IsThereBeforeAnyStartUpCodeHasRun) {
    EXPECT_EQ(takenAtStartUp, "LogList<?xml version=\"1.0\" encoding=\"utf-8\"?>TRANSFER_GROUP_NUMBER");
}

TEST(Vocabulary, KeepsFormsApartThatDifferOnPurpose) {
    EXPECT_STREQ(Helper::UNIQUEID, "UniqueId");
    EXPECT_STREQ(Helper::PHONEBOOK_UNIQUEID, "UniqueID");
    EXPECT_STREQ(Helper::FIRSTNAME, "Firstname");
    EXPECT_STREQ(Helper::CONNECTEDFIRSTNAME, "ConnectedFirstName");
    EXPECT_STREQ(Helper::IN_GROUP_CALL, "IN_GROUP_BUSY");
    EXPECT_STREQ(Helper::IN_GROUP_MISSED, "IN_GROUP_MISSED");
}

}  // namespace
