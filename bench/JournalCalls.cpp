#include "JournalCalls.h"

#include <cstdio>
#include <vector>

#include "Data.h"
#include "ItemJson.h"

namespace bench {

namespace {

constexpr const char* surnames[] = {"Mustermann", "Schmidt", "Kowalczyk", "Lindqvist", "McAllister", "Garcia"};
constexpr const char* firstNames[] = {"Katharina", "Maximilian", "Ann", "Giovanni", "Elisabeth"};

/// Mixes the order of the numbers below `range`: no two get the same place. `stride` and `range` have no common divisor.
std::uint64_t mixed(std::uint64_t index, std::uint64_t stride, std::uint64_t range) {
    return index * stride % range;
}

std::string timeAt(std::uint64_t index) {
    std::uint64_t rest = mixed(index, 104729, 145151999);  // the seconds of five years of 336 days
    const auto take = [&](std::uint64_t range) {
        const auto part = static_cast<unsigned>(rest % range);
        rest /= range;
        return part;
    };
    const unsigned second = take(60);
    const unsigned minute = take(60);
    const unsigned hour = take(24);
    const unsigned day = take(28) + 1;
    const unsigned month = take(12) + 1;
    const unsigned year = take(5) + 2020;
    char text[64];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", year, month, day, hour, minute, second);
    return text;
}

const MissedCallItem& patternAt(std::uint64_t index) {
    static const std::vector<MissedCallItem> patterns = makeItems<MissedCallItem>(Form::mixed, 1000);
    return patterns[index % patterns.size()];
}

void setNumber(MissedCallItem& entry, const std::string& number) {
    auto calls = entry.getMissedCallInfoList();
    calls.front().number = number;
    entry.setMissedCallInfoList(calls);
}

}  // namespace

std::string numberAt(std::uint64_t index, Numbers numbers) {
    const std::string digits = std::to_string(10000000 + mixed(index, 7919, 89999999));
    switch (numbers) {
        case Numbers::sameEnding:
            return "+4930" + digits + "1234";
        case Numbers::addresses:
            return "sip:" + wordAt(index) + "@example.com";
        default:
            return "+4930" + digits;
    }
}

std::string wordAt(std::uint64_t index) {
    std::uint64_t rest = mixed(index, 7368787, 26 * 26 * 26 * 26 * 26);
    std::string word;
    while (word.size() < 5) {
        word += static_cast<char>('a' + rest % 26);
        rest /= 26;
    }
    return word;
}

MissedCallItem entryAt(std::uint64_t index, Numbers numbers) {
    MissedCallItem entry = patternAt(index);
    MissedCallItem::MissedCallInfo call = entry.getMissedCallInfoList().front();
    call.number = numberAt(index, numbers);
    call.timeDate = timeAt(index);
    entry.setUniqueId("");
    entry.setSurname(surnames[index % std::size(surnames)]);
    entry.setFirstname(firstNames[index % std::size(firstNames)] + (' ' + wordAt(index)));
    entry.setViewed(index % 2 == 0);
    entry.setMissedCallInfoList({call});
    return entry;
}

MissedCallItem entryOfJournal(std::uint64_t index, std::size_t count) {
    MissedCallItem entry = entryAt(index);
    if (index % (count / sharedEntries) == 3) {
        setNumber(entry, sharedNumber);
        entry.setSurname(sharedSurname);
        entry.setFirstname("");
    }
    return entry;
}

std::string jsonLineOf(const MissedCallItem& entry) {
    const calljournal::Json json = calljournal::toJson(entry);
    calljournal::Json call = json["LogList"][0];
    call["Kind"] = "missed";
    for (const char* element : {"Surname", "Firstname", "PictureClip"}) {
        if (json.contains(element)) {
            call[element] = json[element];
        }
    }
    return call.dump() + '\n';
}

}  // namespace bench
