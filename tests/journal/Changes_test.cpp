#include "Changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace calljournal;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

template <class Item>
Item entry(const std::string& id, const std::string& surname) {
    Item item;
    item.setUniqueId(id);
    item.setSurname(surname);
    return item;
}

MissedCallItem missed(const std::string& id, const std::string& surname, bool isViewed = false) {
    MissedCallItem item = entry<MissedCallItem>(id, surname);
    item.setViewed(isViewed);
    return item;
}

/// "id surname: action" of each change.
template <class Item>
std::vector<std::string> changes(const std::deque<Item>& before, const std::deque<Item>& now) {
    std::vector<std::string> all;
    for (const Change<Item>& change : changesBetween(before, now)) {
        all.push_back(change.entry.getUniqueId() + " " + change.entry.getSurname() + ": " +
                      std::to_string(change.action));
    }
    return all;
}

constexpr char added[] = ": 0";
constexpr char changed[] = ": 1";
constexpr char viewed[] = ": 2";
constexpr char deleted[] = ": 3";

TEST(Changes, AreNoneBetweenEqualLists) {
    const std::deque<MissedCallItem> list = {missed("1", "a"), missed("2", "b")};
    EXPECT_THAT(changes(list, list), IsEmpty());
    EXPECT_THAT(changes<MissedCallItem>(list, {missed("2", "b"), missed("1", "a")}), IsEmpty());
}

TEST(Changes, ComeInTheOrderOfTheIdsAndTheDeletedOnesLast) {
    EXPECT_THAT(changes<ReceivedCallItem>({entry<ReceivedCallItem>("1", "a"), entry<ReceivedCallItem>("3", "c")},
                                          {entry<ReceivedCallItem>("3", "C"), entry<ReceivedCallItem>("2", "b")}),
                ElementsAre(std::string("2 b") + added, std::string("3 C") + changed, std::string("1 a") + deleted));
}

TEST(Changes, OfAnEntryThatWasOnlySeenSaySo) {
    EXPECT_THAT(changes<MissedCallItem>({missed("1", "a")}, {missed("1", "a", true)}),
                ElementsAre(std::string("1 a") + viewed));
    EXPECT_THAT(changes<MissedCallItem>({missed("1", "a")}, {missed("1", "b", true)}),
                ElementsAre(std::string("1 b") + changed));
    EXPECT_THAT(changes<MissedCallItem>({missed("1", "a", true)}, {missed("1", "a")}),
                ElementsAre(std::string("1 a") + changed));
}

}  // namespace
