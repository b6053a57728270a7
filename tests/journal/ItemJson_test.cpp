#include "ItemJson.h"

#include <gtest/gtest.h>
#include <memory>

using namespace calljournal;

namespace {

constexpr char wholeEntry[] =
    R"({"UniqueId":"12","EntryId":"7","Surname":"Smith & Co","Firstname":"Ann","PictureClip":"p.jpg","Viewed":true,)"
    R"("LogList":[{"Number":"0301234","NumberType":"MOBILE","ConnectedNumberType":"NO_ICON","TimeDate":"2024-05-01 10:15:00",)"
    R"("CompletedElsewhere":false,"TargetLog":"IN_NO_ANSWER","NumberPresentation":"ALLOWED",)"
    R"("NamePresentation":"NOT_AVAILABLE","DeflectNumberPresentation":"NOT_AVAILABLE","DeflectNumberType":"NO_ICON",)"
    R"("DeflectNamePresentation":"NOT_AVAILABLE","TimeFormat":"FORM_24","GroupName":"Sales"}]})";

std::string refusal(const std::string& json) {
    try {
        itemFromJson<MissedCallItem>(Json::parse(json));
    } catch (const ValueError& error) {
        return error.what();
    }
    return "";
}

TEST(ItemJson, WritesAnEntryUnderTheNamesOfItsElements) {
    MissedCallItem::MissedCallInfo call;
    call.number = "0301234";
    call.numberType = NumberType::MOBILE;
    call.timeDate = "2024-05-01 10:15:00";
    call.targetLog = CallLogEntryEvent::IN_NO_ANSWER;
    call.numberPresentation = CallLogEntryEvent::ALLOWED;
    call.groupName = "Sales";
    MissedCallItem item("7", "Smith & Co", "Ann", *std::make_unique<std::list<MissedCallItem::MissedCallInfo>>(), true);
    item.setUniqueId("12");
    item.setPictureClip("p.jpg");
    item.addCallInfoToList(call);
    EXPECT_EQ(jsonText(toJson(item), false), wholeEntry);
}

TEST(ItemJson, ReadsWhatItWrites) {
    EXPECT_EQ(jsonText(toJson(itemFromJson<MissedCallItem>(Json::parse(wholeEntry))), false), wholeEntry);
}

TEST(ItemJson, TakesThePictureByEitherName) {
    EXPECT_EQ(itemFromJson<MissedCallItem>(Json::parse(R"({"Picture":"p.jpg"})")).getPictureClip(), "p.jpg");
    EXPECT_EQ(itemFromJson<MissedCallItem>(Json::parse(R"({"PictureClip":"p.jpg"})")).getPictureClip(), "p.jpg");
}

TEST(ItemJson, NamesTheElementAtFault) {
    EXPECT_EQ(refusal("[]"), "an entry is a JSON object");
    EXPECT_EQ(refusal(R"({"Viewd":true})"), "Viewd: an entry has no such element");
    EXPECT_EQ(refusal(R"({"Viewed":"True"})"), "Viewed: \"True\" is neither true nor false");
    EXPECT_EQ(refusal(R"({"Surname":3})"), "Surname: 3 is not a text");
    EXPECT_EQ(refusal(R"({"LogList":{}})"), "LogList: is not an array");
    EXPECT_EQ(refusal(R"({"LogList":[3]})"), "LogList: a call is a JSON object");
    EXPECT_EQ(refusal(R"({"LogList":[{"Duration":"1"}]})"), "Duration: a call has no such element");
    EXPECT_EQ(refusal(R"({"LogList":[{"TargetLog":"LOST"}]})"),
              "TargetLog: \"LOST\" is not one of OUT_BUSY, IN_ANSWERED, IN_NO_ANSWER, IN_BUSY, IN_GROUP_MISSED, "
              "OUT_ANSWERED, OUT_NO_ANSWER, IN_GROUP_BUSY");
    EXPECT_EQ(refusal(R"({"LogList":[{"CompletedElsewhere":1}]})"), "CompletedElsewhere: 1 is neither true nor false");
}

TEST(ItemJson, ReplacesBytesThatAreNotUtf8) {
    MissedCallItem item;
    item.setSurname("M\xfcller");
    EXPECT_EQ(jsonText(toJson(item), false), "{\"Surname\":\"M\xef\xbf\xbdller\",\"Viewed\":false,\"LogList\":[]}");
}

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

TEST(ItemJson, RefusesNestingThatWouldUseUpTheStack) {
    EXPECT_EQ(jsonText(parseJson(nested(16)), false), nested(16));
    EXPECT_THROW(parseJson(nested(17)), ValueError);
}

TEST(ItemJson, WritesACallBackUnderTheNamesOfItsElements) {
    StoredCallBack callBack;
    callBack.setUniqueId("12");
    callBack.setSurname("Smith");
    callBack.setNumber("0301234");
    callBack.setCallBackState(CallBackItem::ACTIVE);
    EXPECT_EQ(jsonText(toJson(callBack), false),
              R"({"UniqueId":"12","Surname":"Smith","CallBackNumber":"0301234","NumberType":"NO_ICON",)"
              R"("CallBackType":"NOTYPE","CallBackState":"ACTIVE"})");
}

}  // namespace
