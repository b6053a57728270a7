// Whatever is done with a journal whose files were damaged is right, or fails with a reason. An input is a number of
// changes of the files that a closed or a killed process left.

#include <algorithm>
#include <string>

#include "DamagedJournal.h"
#include "Fuzz.h"
#include "TemporaryFolder.h"

namespace {

constexpr std::size_t pageSize = 4096;

std::size_t number(Input& input) {
    const std::size_t high = input.byte();
    const std::size_t middle = input.byte();
    return (high << 16U) + (middle << 8U) + input.byte();
}

/// Changes a byte, a piece or the end of `content`, of which the first `size` bytes may be changed.
void change(std::string& content, std::size_t size, Input& input) {
    const unsigned how = input.byte();
    const std::size_t at = number(input) % size;
    if (how < 160) {
        content[at] = static_cast<char>(content[at] ^ static_cast<char>(input.byte() | 1U));
    } else if (how < 224 || size < content.size()) {
        const std::size_t from = number(input) % size;
        const std::size_t length = std::min({pageSize, size - at, size - from});
        content.replace(at, length, content.substr(from, length));
    } else {
        content.resize(std::max<std::size_t>(at, 1));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const calljournal::TemporaryFolder folder;
    static DamagedJournal journal(folder.path().string());
    static const DamagedJournal::Answers closedAnswers = journal.answersOf(journal.closed());
    static const DamagedJournal::Answers killedAnswers = journal.answersOf(journal.killed());
    Input input(data, size);
    const bool isClosed = input.byte() % 2 == 0;
    StoreFiles files = isClosed ? journal.closed() : journal.killed();
    while (!input.isEmpty()) {
        const bool isLog = !isClosed && input.byte() % 2 == 0;
        // A log that lost its end is that of a moment before; nobody can tell. A database cut to nothing is an empty one.
        change(isLog ? files.log : files.database, isLog ? journal.logBeforeLast() : files.database.size(), input);
    }
    FUZZ_CHECK(journal.judge(files, isClosed ? closedAnswers : killedAnswers).silent.empty());
    return 0;
}
