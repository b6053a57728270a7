#include "CallItemWithPicture.h"

#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "FakePlatform.h"
#include "VirtualTable.h"

namespace {

struct CallItemWithPictureLayout {
    virtual ~CallItemWithPictureLayout() {}
    std::string texts[5];
};

class CallItemWithPictureTest : public ::testing::Test {
protected:
    CallItemWithPictureTest() {
        fakePlatform().reset();
        fakePlatform().switchOn("Journal Service", 4);
    }
};

CallItemWithPicture filledItem() {
    CallItemWithPicture item("7", "Smith", "Ann");
    item.setUniqueId("12:34");
    item.setPictureClip("p.jpg");
    return item;
}

TEST_F(CallItemWithPictureTest, StartsWithEmptyTexts) {
    const CallItemWithPicture item;

    EXPECT_EQ(item.getEntryId() + item.getSurname() + item.getFirstname(), "");
    EXPECT_EQ(item.getUniqueId(), "");
    EXPECT_EQ(item.getPictureClip(), "");
}

TEST_F(CallItemWithPictureTest, IsBuiltFromThreeTextsWithoutUniqueIdAndPicture) {
    const CallItemWithPicture item("7", "Smith", "Ann");

    EXPECT_EQ(item.getEntryId(), "7");
    EXPECT_EQ(item.getSurname(), "Smith");
    EXPECT_EQ(item.getFirstname(), "Ann");
    EXPECT_EQ(item.getUniqueId(), "");
    EXPECT_EQ(item.getPictureClip(), "");
}

TEST_F(CallItemWithPictureTest, KeepsUniqueIdAndPictureByteForByte) {
    CallItemWithPicture item;
    const std::string text(" a:b\0<", 6);

    item.setUniqueId(text);
    item.setPictureClip(text + "p");

    EXPECT_EQ(item.getUniqueId(), text);
    EXPECT_EQ(item.getPictureClip(), text + "p");
}

TEST_F(CallItemWithPictureTest, GivesReferencesToItsTextsNotCopies) {
    CallItemWithPicture item;
    const std::string& clip = item.getPictureClip();

    item.setPictureClip("p.jpg");

    EXPECT_EQ(clip, "p.jpg");
    EXPECT_TRUE((std::is_same<decltype(item.getUniqueId()), const std::string&>::value));
    EXPECT_TRUE((std::is_same<decltype(item.getPictureClip()), const std::string&>::value));
}

TEST_F(CallItemWithPictureTest, DoesNotLogTheFirstUniqueId) {
    CallItemWithPicture item;

    item.setUniqueId("1");

    EXPECT_EQ(item.getUniqueId(), "1");
    EXPECT_TRUE(fakePlatform().log.empty());
    EXPECT_EQ(fakePlatform().switchQuestions, 0u);
}

TEST_F(CallItemWithPictureTest, LogsTheNewUniqueIdWhenItReplacesAnother) {
    CallItemWithPicture item;
    item.setUniqueId("old");

    item.setUniqueId("new %s");

    ASSERT_EQ(fakePlatform().log.size(), 1u);
    const LogLine& line = fakePlatform().log.front();
    EXPECT_EQ(line.text, "setUniqueId[new %s]");
    EXPECT_EQ(line.module, "Journal Service");
    EXPECT_EQ(line.level, 4);
    EXPECT_EQ(line.sourceFile, "CallItemWithPicture");
    EXPECT_EQ(item.getUniqueId(), "new %s");
}

TEST_F(CallItemWithPictureTest, LogsAnEqualUniqueIdToo) {
    CallItemWithPicture item;
    item.setUniqueId("same");

    item.setUniqueId("same");

    EXPECT_EQ(fakePlatform().logTexts(), std::vector<std::string>{"setUniqueId[same]"});
}

TEST_F(CallItemWithPictureTest, LogsAnEmptyUniqueIdThatReplacesAnother) {
    CallItemWithPicture item;
    item.setUniqueId("old");

    item.setUniqueId("");
    item.setUniqueId("first again");

    EXPECT_EQ(fakePlatform().logTexts(), std::vector<std::string>{"setUniqueId[]"});
    EXPECT_EQ(item.getUniqueId(), "first again");
}

TEST_F(CallItemWithPictureTest, ReplacesTheUniqueIdSilentlyWhileTheLogIsOff) {
    fakePlatform().reset();
    fakePlatform().switchOn("Journal Service", 3);
    fakePlatform().switchOn("Journal Service", 5);
    CallItemWithPicture item;
    item.setUniqueId("old");

    item.setUniqueId("new");

    EXPECT_EQ(item.getUniqueId(), "new");
    EXPECT_TRUE(fakePlatform().log.empty());
}

TEST_F(CallItemWithPictureTest, LogsNothingButAReplacedUniqueId) {
    CallItemWithPicture item = filledItem();

    item.setPictureClip("q.jpg");
    item.setEntryId("8");
    const CallItemWithPicture copy(item);
    CallItemWithPicture assigned = filledItem();
    assigned = copy;
    item.reset();

    EXPECT_TRUE(fakePlatform().log.empty());
}

TEST_F(CallItemWithPictureTest, EqualsAnItemWithTheSameFiveTexts) {
    EXPECT_TRUE(CallItemWithPicture() == CallItemWithPicture());
    EXPECT_TRUE(filledItem() == filledItem());
}

TEST_F(CallItemWithPictureTest, DiffersWhenAnyTextDiffers) {
    void (CallItemWithPicture::*const setters[])(const std::string&) = {
        &CallItemWithPicture::setEntryId, &CallItemWithPicture::setSurname, &CallItemWithPicture::setFirstname,
        &CallItemWithPicture::setUniqueId, &CallItemWithPicture::setPictureClip};

    for (const auto setter : setters) {
        CallItemWithPicture changed = filledItem();
        (changed.*setter)("other");
        EXPECT_FALSE(changed == filledItem());
        EXPECT_FALSE(filledItem() == changed);
    }
}

TEST_F(CallItemWithPictureTest, EqualsAsACallItemWhateverItsPictureAndUniqueId) {
    CallItemWithPicture other = filledItem();
    other.setPictureClip("q.jpg");
    const CallItemWithPicture item = filledItem();
    const CallItem& plain = item;

    EXPECT_FALSE(item == other);
    EXPECT_TRUE(plain == other);
    other.setUniqueId("5");
    EXPECT_TRUE(plain == other);
}

class WithOwnComparison : public CallItemWithPicture {
public:
    using CallItemWithPicture::operator==;
    bool operator==(const CallItem&) const override { return answer; }
    bool answer = true;
};

TEST_F(CallItemWithPictureTest, ComparesTheCallItemThroughTheVirtualOperator) {
    WithOwnComparison item;
    CallItemWithPicture other;
    const CallItemWithPicture& itself = item;

    item.answer = false;
    EXPECT_FALSE(itself == other);
    item.answer = true;
    other.setSurname("is not looked at by the override");
    EXPECT_TRUE(itself == other);
    other.setUniqueId("but this is");
    EXPECT_FALSE(itself == other);
}

TEST_F(CallItemWithPictureTest, HasEmptyTextsOnceReset) {
    CallItemWithPicture item = filledItem();

    item.reset();

    EXPECT_TRUE(item == CallItemWithPicture());
    EXPECT_EQ(item.getUniqueId() + item.getPictureClip() + item.getSurname(), "");
}

TEST_F(CallItemWithPictureTest, HoldsItsTextsBehindThoseOfCallItemAndNothingElse) {
    const CallItemWithPicture item;

    EXPECT_EQ(&item.getUniqueId(), &item.getFirstname() + 1);
    EXPECT_EQ(&item.getPictureClip(), &item.getUniqueId() + 1);
    EXPECT_EQ(sizeof(CallItemWithPicture), sizeof(CallItemWithPictureLayout));
}

class WithOwnPictureComparison : public CallItemWithPicture {
public:
    bool operator==(const CallItemWithPicture&) const override { return true; }
};

TEST_F(CallItemWithPictureTest, KeepsTheSlotsOfCallItemAndAddsItsOwnComparison) {
    const CallItem plain;
    const CallItemWithPicture item;
    const WithOwnPictureComparison other;

    EXPECT_EQ((slotOfEquality<CallItemWithPicture, CallItem>()), 2u);
    EXPECT_EQ(slotOf(&CallItemWithPicture::reset), 3u);
    EXPECT_EQ((slotOfEquality<CallItemWithPicture, CallItemWithPicture>()), 4u);
    EXPECT_EQ(changedSlots(&plain, &item, 4), (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(changedSlots(&item, &other, 5), (std::vector<std::size_t>{0, 1, 4}));
}

}  // namespace
