#include <gtest/gtest.h>
#include <string>

#include "FakePlatform.h"
#include "Kinds.h"

/// The exact texts that each kind of entry is written as.
namespace {

TEST(MissedEncoding, WritesEveryMemberInItsOrder) {
    EXPECT_EQ(Missed::encode(filledItem<Missed>(), false),
              "<UniqueId>the UniqueId</UniqueId>"
              "<EntryId>the EntryId</EntryId>"
              "<Surname>the Surname</Surname>"
              "<Firstname>the Firstname</Firstname>"
              "<Picture>the PictureClip</Picture>"
              "<Viewed>True</Viewed>"
              "<LogList>"
              "<Item>"
              "<Number>the Number</Number>"
              "<NumberType>PRIVATE</NumberType>"
              "<ConnectedNumber>the ConnectedNumber</ConnectedNumber>"
              "<ConnectedNumberType>PRIVATE</ConnectedNumberType>"
              "<ConnectedSurname>the ConnectedSurname</ConnectedSurname>"
              "<ConnectedFirstName>the ConnectedFirstName</ConnectedFirstName>"
              "<TimeDate>the TimeDate</TimeDate>"
              "<CompletedElsewhere>True</CompletedElsewhere>"
              "<TargetLog>IN_NO_ANSWER</TargetLog>"
              "<NumberPresentation>ALLOWED</NumberPresentation>"
              "<NamePresentation>ALLOWED</NamePresentation>"
              "<DeflectNumberPresentation>ALLOWED</DeflectNumberPresentation>"
              "<DeflectNumber>the DeflectNumber</DeflectNumber>"
              "<DeflectNumberType>PRIVATE</DeflectNumberType>"
              "<DeflectNamePresentation>ALLOWED</DeflectNamePresentation>"
              "<DeflectName>the DeflectName</DeflectName>"
              "<TimeFormat>FORM_AM</TimeFormat>"
              "<GroupName>the GroupName</GroupName>"
              "<GroupNumber>the GroupNumber</GroupNumber>"
              "</Item>"
              "<Item>"
              "<NumberType>NO_ICON</NumberType>"
              "<ConnectedNumberType>NO_ICON</ConnectedNumberType>"
              "<CompletedElsewhere>False</CompletedElsewhere>"
              "<TargetLog>IN_ANSWERED</TargetLog>"
              "<NumberPresentation>NOT_AVAILABLE</NumberPresentation>"
              "<NamePresentation>NOT_AVAILABLE</NamePresentation>"
              "<DeflectNumberPresentation>NOT_AVAILABLE</DeflectNumberPresentation>"
              "<DeflectNumberType>NO_ICON</DeflectNumberType>"
              "<DeflectNamePresentation>NOT_AVAILABLE</DeflectNamePresentation>"
              "<TimeFormat>FORM_24</TimeFormat>"
              "</Item>"
              "</LogList>");
}

TEST(DialledEncoding, WritesEveryMemberInItsOrder) {
    EXPECT_EQ(Dialled::encode(filledItem<Dialled>(), false),
              "<UniqueId>the UniqueId</UniqueId>"
              "<EntryId>the EntryId</EntryId>"
              "<Surname>the Surname</Surname>"
              "<Firstname>the Firstname</Firstname>"
              "<PictureClip>the PictureClip</PictureClip>"
              "<JSGroupBy>the JSGroupBy</JSGroupBy>"
              "<LogList>"
              "<Item>"
              "<Number>the Number</Number>"
              "<NumberType>PRIVATE</NumberType>"
              "<ResolvedNumber>the ResolvedNumber</ResolvedNumber>"
              "<ConnectedNumber>the ConnectedNumber</ConnectedNumber>"
              "<ConnectedNumberPriority>True</ConnectedNumberPriority>"
              "<ConnectedNumberType>PRIVATE</ConnectedNumberType>"
              "<ConnectedSurname>the ConnectedSurname</ConnectedSurname>"
              "<ConnectedFirstName>the ConnectedFirstName</ConnectedFirstName>"
              "<IsBluetoothCall>True</IsBluetoothCall>"
              "<TimeDate>the TimeDate</TimeDate>"
              "<Duration>the Duration</Duration>"
              "<TargetLog>IN_NO_ANSWER</TargetLog>"
              "<NumberPresentation>ALLOWED</NumberPresentation>"
              "<NamePresentation>ALLOWED</NamePresentation>"
              "<TimeFormat>FORM_AM</TimeFormat>"
              "<TransferType>TRANSFER_DESTINATION_NUMBER</TransferType>"
              "</Item>"
              "<Item>"
              "<NumberType>NO_ICON</NumberType>"
              "<ConnectedNumberPriority>False</ConnectedNumberPriority>"
              "<ConnectedNumberType>NO_ICON</ConnectedNumberType>"
              "<IsBluetoothCall>False</IsBluetoothCall>"
              "<TargetLog>IN_ANSWERED</TargetLog>"
              "<NumberPresentation>NOT_AVAILABLE</NumberPresentation>"
              "<NamePresentation>NOT_AVAILABLE</NamePresentation>"
              "<TimeFormat>FORM_24</TimeFormat>"
              "<TransferType>TRANSFER_SOURCE_NUMBER</TransferType>"
              "</Item>"
              "</LogList>");
}

TEST(ReceivedEncoding, WritesEveryMemberInItsOrder) {
    EXPECT_EQ(Received::encode(filledItem<Received>(), false),
              "<UniqueId>the UniqueId</UniqueId>"
              "<EntryId>the EntryId</EntryId>"
              "<Surname>the Surname</Surname>"
              "<Firstname>the Firstname</Firstname>"
              "<PictureClip>the PictureClip</PictureClip>"
              "<LogList>"
              "<Item>"
              "<Number>the Number</Number>"
              "<NumberType>PRIVATE</NumberType>"
              "<ConnectedNumber>the ConnectedNumber</ConnectedNumber>"
              "<ConnectedNumberType>PRIVATE</ConnectedNumberType>"
              "<ConnectedSurname>the ConnectedSurname</ConnectedSurname>"
              "<ConnectedFirstName>the ConnectedFirstName</ConnectedFirstName>"
              "<TimeDate>the TimeDate</TimeDate>"
              "<Duration>the Duration</Duration>"
              "<TargetLog>IN_NO_ANSWER</TargetLog>"
              "<NumberPresentation>ALLOWED</NumberPresentation>"
              "<NamePresentation>ALLOWED</NamePresentation>"
              "<DeflectNumberPresentation>ALLOWED</DeflectNumberPresentation>"
              "<DeflectNumber>the DeflectNumber</DeflectNumber>"
              "<DeflectNumberType>PRIVATE</DeflectNumberType>"
              "<DeflectNamePresentation>ALLOWED</DeflectNamePresentation>"
              "<DeflectName>the DeflectName</DeflectName>"
              "<TimeFormat>FORM_AM</TimeFormat>"
              "<TransferType>TRANSFER_DESTINATION_NUMBER</TransferType>"
              "</Item>"
              "<Item>"
              "<NumberType>NO_ICON</NumberType>"
              "<ConnectedNumberType>NO_ICON</ConnectedNumberType>"
              "<TargetLog>IN_ANSWERED</TargetLog>"
              "<NumberPresentation>NOT_AVAILABLE</NumberPresentation>"
              "<NamePresentation>NOT_AVAILABLE</NamePresentation>"
              "<DeflectNumberPresentation>NOT_AVAILABLE</DeflectNumberPresentation>"
              "<DeflectNumberType>NO_ICON</DeflectNumberType>"
              "<DeflectNamePresentation>NOT_AVAILABLE</DeflectNamePresentation>"
              "<TimeFormat>FORM_24</TimeFormat>"
              "<TransferType>TRANSFER_SOURCE_NUMBER</TransferType>"
              "</Item>"
              "</LogList>");
}

TEST(ForwardedEncoding, WritesEveryMemberInItsOrder) {
    EXPECT_EQ(Forwarded::encode(filledItem<Forwarded>(), false),
              "<UniqueId>the UniqueId</UniqueId>"
              "<EntryId>the EntryId</EntryId>"
              "<Surname>the Surname</Surname>"
              "<Firstname>the Firstname</Firstname>"
              "<PictureClip>the PictureClip</PictureClip>"
              "<LogList>"
              "<Item>"
              "<Number>the Number</Number>"
              "<NumberType>PRIVATE</NumberType>"
              "<ConnectedNumber>the ConnectedNumber</ConnectedNumber>"
              "<ConnectedNumberType>PRIVATE</ConnectedNumberType>"
              "<ConnectedSurname>the ConnectedSurname</ConnectedSurname>"
              "<ConnectedFirstName>the ConnectedFirstName</ConnectedFirstName>"
              "<TimeDate>the TimeDate</TimeDate>"
              "<Duration>the Duration</Duration>"
              "<TransferType>TRANSFER_DESTINATION_NUMBER</TransferType>"
              "</Item>"
              "<Item>"
              "<NumberType>NO_ICON</NumberType>"
              "<ConnectedNumberType>NO_ICON</ConnectedNumberType>"
              "<TransferType>TRANSFER_SOURCE_NUMBER</TransferType>"
              "</Item>"
              "</LogList>");
}

TEST(MissedEncoding, WritesATypicalEntry) {
    MissedCallItem::MissedCallInfo call;
    call.number = "0301234";
    call.numberType = static_cast<NumberType::NT>(4);
    call.timeDate = "2024-05-01 10:15:00";
    call.targetLog = static_cast<CallLogEntryEvent::_LogTarget>(1);
    call.numberPresentation = static_cast<CallLogEntryEvent::_PresentationValue>(1);
    call.groupName = "Sales";
    MissedCallItem item;
    item.setUniqueId("12:34");
    item.setEntryId("7");
    item.setSurname("Smith & Co");
    item.setFirstname("Ann");
    item.addCallInfoToList(call);

    EXPECT_EQ(Missed::encode(item, false),
              "<UniqueId>1234</UniqueId>"
              "<EntryId>7</EntryId>"
              "<Surname>Smith &amp; Co</Surname>"
              "<Firstname>Ann</Firstname>"
              "<Viewed>False</Viewed>"
              "<LogList>"
              "<Item>"
              "<Number>0301234</Number>"
              "<NumberType>MOBILE</NumberType>"
              "<ConnectedNumberType>NO_ICON</ConnectedNumberType>"
              "<TimeDate>2024-05-01 10:15:00</TimeDate>"
              "<CompletedElsewhere>False</CompletedElsewhere>"
              "<TargetLog>IN_NO_ANSWER</TargetLog>"
              "<NumberPresentation>ALLOWED</NumberPresentation>"
              "<NamePresentation>NOT_AVAILABLE</NamePresentation>"
              "<DeflectNumberPresentation>NOT_AVAILABLE</DeflectNumberPresentation>"
              "<DeflectNumberType>NO_ICON</DeflectNumberType>"
              "<DeflectNamePresentation>NOT_AVAILABLE</DeflectNamePresentation>"
              "<TimeFormat>FORM_24</TimeFormat>"
              "<GroupName>Sales</GroupName>"
              "</Item>"
              "</LogList>");
    EXPECT_EQ(Missed::encode(item, true), "<UniqueId>1234</UniqueId>");
}

TEST(DialledEncoding, WritesATypicalCall) {
    DialledCallItem::DialledCallInfo call;
    call.number = "0301234";
    call.numberType = static_cast<NumberType::NT>(1);
    call.resolvedNumber = "+49301234";
    call.isBluetoothCall = true;
    call.timeDate = "2024-05-01 10:15:00";
    call.duration = "00:02:13";
    call.targetLog = static_cast<CallLogEntryEvent::_LogTarget>(4);
    call.numberPresentation = static_cast<CallLogEntryEvent::_PresentationValue>(1);
    call.namePresentation = static_cast<CallLogEntryEvent::_PresentationValue>(1);
    std::string out;

    Dialled::encodeCalls(DialledCallItem("", "", "", {call}), out);

    EXPECT_EQ(out,
              "<LogList>"
              "<Item>"
              "<Number>0301234</Number>"
              "<NumberType>PRIVATE</NumberType>"
              "<ResolvedNumber>+49301234</ResolvedNumber>"
              "<ConnectedNumberPriority>False</ConnectedNumberPriority>"
              "<ConnectedNumberType>NO_ICON</ConnectedNumberType>"
              "<IsBluetoothCall>True</IsBluetoothCall>"
              "<TimeDate>2024-05-01 10:15:00</TimeDate>"
              "<Duration>00:02:13</Duration>"
              "<TargetLog>OUT_ANSWERED</TargetLog>"
              "<NumberPresentation>ALLOWED</NumberPresentation>"
              "<NamePresentation>ALLOWED</NamePresentation>"
              "<TimeFormat>FORM_24</TimeFormat>"
              "<TransferType>TRANSFER_SOURCE_NUMBER</TransferType>"
              "</Item>"
              "</LogList>");
}

TEST(ForwardedEncoding, WritesATypicalCall) {
    ForwardedCallItem::ForwardedCallInfo call;
    call.number = "0301234";
    call.connectedNumber = "0305555";
    call.connectedNumberType = static_cast<NumberType::NT>(4);
    call.timeDate = "2024-05-01 10:15:00";
    call.duration = "00:00:41";
    call.transferType = static_cast<TransferNumber::TransferNumberType>(1);
    std::string out;

    Forwarded::encodeCalls(ForwardedCallItem("", "", "", {call}), out);

    EXPECT_EQ(out,
              "<LogList>"
              "<Item>"
              "<Number>0301234</Number>"
              "<NumberType>NO_ICON</NumberType>"
              "<ConnectedNumber>0305555</ConnectedNumber>"
              "<ConnectedNumberType>MOBILE</ConnectedNumberType>"
              "<TimeDate>2024-05-01 10:15:00</TimeDate>"
              "<Duration>00:00:41</Duration>"
              "<TransferType>TRANSFER_DESTINATION_NUMBER</TransferType>"
              "</Item>"
              "</LogList>");
}

TEST(MissedEncoding, WritesAnEmptyEntryAsViewedAndLogList) {
    EXPECT_EQ(Missed::encode(MissedCallItem(), false), "<Viewed>False</Viewed><LogList></LogList>");
}

TEST(DialledEncoding, WritesAnEmptyEntryAsItsLogList) {
    EXPECT_EQ(Dialled::encode(DialledCallItem(), false), "<LogList></LogList>");
}

TEST(ReceivedEncoding, WritesAnEmptyEntryAsItsLogList) {
    EXPECT_EQ(Received::encode(ReceivedCallItem(), false), "<LogList></LogList>");
}

TEST(ForwardedEncoding, WritesAnEmptyEntryAsItsLogList) {
    EXPECT_EQ(Forwarded::encode(ForwardedCallItem(), false), "<LogList></LogList>");
}

TEST(MissedDecoding, ReadsThePictureFromAnElementThatTheEncoderDoesNotWrite) {
    MissedCallItem item;
    item.setPictureClip("before");

    Missed::decode("<Picture>p.jpg</Picture>", item);
    EXPECT_EQ(item.getPictureClip(), "");
    Missed::decode("<PictureClip>p.jpg</PictureClip>", item);
    EXPECT_EQ(item.getPictureClip(), "p.jpg");
}

TEST(MissedDecoding, TakesAnEntryAsViewedOnlyForExactlyTrue) {
    MissedCallItem item;

    Missed::decode("<Viewed>True</Viewed>", item);
    EXPECT_TRUE(item.getViewed());
    Missed::decode("<Viewed>true</Viewed>", item);
    EXPECT_FALSE(item.getViewed());
    item.setViewed(true);
    Missed::decode("", item);
    EXPECT_FALSE(item.getViewed());
}

TEST(MissedDecoding, TakesACallAsCompletedElsewhereOnlyForExactlyTrue) {
    for (const char* const text : {"true", "TRUE", "1", "", " True", "True "}) {
        MissedCallItem::MissedCallInfo call;
        call.completedElsewhere = true;
        Missed::decodeCall((std::string("<CompletedElsewhere>") + text + "</CompletedElsewhere>").c_str(), call);
        EXPECT_FALSE(call.completedElsewhere) << text;
    }
    MissedCallItem::MissedCallInfo call;
    Missed::decodeCall("<CompletedElsewhere>True</CompletedElsewhere>", call);
    EXPECT_TRUE(call.completedElsewhere);
    Missed::decodeCall("<CompletedElsewhere>True", call);
    EXPECT_FALSE(call.completedElsewhere);
}

TEST(DialledDecoding, TakesItsFlagsAsSetOnlyForExactlyTrue) {
    DialledCallItem::DialledCallInfo call;
    call.connectedNumberPriority = true;

    Dialled::decodeCall("<IsBluetoothCall>True</IsBluetoothCall>", call);
    EXPECT_FALSE(call.connectedNumberPriority);
    EXPECT_TRUE(call.isBluetoothCall);
    Dialled::decodeCall(
        "<ConnectedNumberPriority>True</ConnectedNumberPriority><IsBluetoothCall>TRUE</IsBluetoothCall>", call);
    EXPECT_TRUE(call.connectedNumberPriority);
    EXPECT_FALSE(call.isBluetoothCall);
}

TEST(DialledDecoding, LooksForThePriorityBeforeTheConnectedNumber) {
    // Written the other way round, the connected number lies behind the priority and the cursor has passed it by the
    // time it is looked for; in front of it, the cursor stays and the number is found.
    DialledCallItem::DialledCallInfo written;
    Dialled::decodeCall(
        "<ConnectedNumber>1</ConnectedNumber><ConnectedNumberPriority>True</ConnectedNumberPriority>"
        "<ConnectedNumberType>MOBILE</ConnectedNumberType>",
        written);
    EXPECT_EQ(written.connectedNumber, "1");
    EXPECT_TRUE(written.connectedNumberPriority);
    EXPECT_EQ(static_cast<int>(written.connectedNumberType), 4);

    // A type in front of the connected number is passed by only if the number stood at the cursor.
    DialledCallItem::DialledCallInfo twice;
    Dialled::decodeCall(
        "<ConnectedNumberPriority>True</ConnectedNumberPriority><ConnectedNumber>2</ConnectedNumber>"
        "<ConnectedNumberPriority>False</ConnectedNumberPriority>",
        twice);
    EXPECT_EQ(twice.connectedNumber, "2");
    EXPECT_TRUE(twice.connectedNumberPriority);
}

TEST(ForwardedDecoding, DoesNotLookForWhatForwardedCallsDoNotCarry) {
    ForwardedCallItem::ForwardedCallInfo call;

    Forwarded::decodeCall(
        "<TargetLog>OUT_BUSY</TargetLog><NumberPresentation>ALLOWED</NumberPresentation>"
        "<NamePresentation>ALLOWED</NamePresentation><DeflectNumber>1</DeflectNumber><DeflectName>Smith</DeflectName>"
        "<DeflectNumberType>MOBILE</DeflectNumberType>"
        "<DeflectNumberPresentation>ALLOWED</DeflectNumberPresentation>"
        "<DeflectNamePresentation>ALLOWED</DeflectNamePresentation><TransferType>TRANSFER_GROUP_NUMBER</TransferType>",
        call);

    EXPECT_EQ(static_cast<int>(call.targetLog), 0);
    EXPECT_EQ(static_cast<int>(call.numberPresentation), 0);
    EXPECT_EQ(static_cast<int>(call.namePresentation), 0);
    EXPECT_EQ(call.deflectNumber + call.deflectName, "");
    EXPECT_EQ(static_cast<int>(call.deflectNumberType), 0);
    EXPECT_EQ(static_cast<int>(call.transferType), 2);
}

TEST(ReceivedDecoding, GivesBackACallEqualToTheOneWritten) {
    auto call = filledCall<Received>();
    call.reference.clear();
    std::list<ReceivedCallItem::ReceivedCallInfo> calls;

    EXPECT_TRUE(Received::decodeCalls(Received::encode(ReceivedCallItem("7", "", "", {call}), false).c_str(), calls));

    ASSERT_EQ(calls.size(), 1u);
    EXPECT_TRUE(calls.front() == call);
}

TEST(ForwardedDecoding, GivesBackACallEqualToTheOneWritten) {
    auto call = filledCall<Forwarded>();
    call.reference.clear();
    call.targetLog = CallLogEntryEvent::_LogTarget();
    call.numberPresentation = CallLogEntryEvent::_PresentationValue();
    call.namePresentation = CallLogEntryEvent::_PresentationValue();
    std::list<ForwardedCallItem::ForwardedCallInfo> calls;

    EXPECT_TRUE(
        Forwarded::decodeCalls(Forwarded::encode(ForwardedCallItem("7", "", "", {call}), false).c_str(), calls));

    ASSERT_EQ(calls.size(), 1u);
    EXPECT_TRUE(calls.front() == call);
    EXPECT_EQ(calls.front().deflectNumber, "");
}

TEST(MissedDecoding, LogsAReplacedUniqueId) {
    fakePlatform().reset();
    fakePlatform().switchOn("Journal Service", 4);
    MissedCallItem item;

    Missed::decode("<UniqueId>1</UniqueId>", item);
    Missed::decode("<UniqueId>2</UniqueId>", item);
    Missed::decode("", item);
    Missed::decode("", item);

    EXPECT_EQ(fakePlatform().logTexts(), (std::vector<std::string>{"setUniqueId[2]", "setUniqueId[]"}));
}

}  // namespace
