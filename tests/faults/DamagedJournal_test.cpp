#include "DamagedJournal.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>

#include "Rounds.h"
#include "RunCommand.h"

namespace {

constexpr std::size_t pageSize = 4096;
constexpr unsigned seed = 20261122;

/// Damages `content`, made of pieces of `unit` bytes, in one of the ways that disks know.
void damage(std::string& content, std::mt19937& random, std::size_t unit) {
    const auto flip = [&](std::size_t at) { content[at] = static_cast<char>(content[at] ^ (1 << random() % 8)); };
    switch (random() % 8) {
        case 0:
            content.resize(1 + random() % (content.size() - 1));
            break;
        case 1: {
            const std::size_t from = random() % (content.size() / unit) * unit;
            const std::size_t to = random() % (content.size() / unit) * unit;
            content.replace(to, unit, random() % 2 == 0 ? std::string(unit, '\0') : content.substr(from, unit));
            break;
        }
        case 2:
            for (std::size_t at = random() % (content.size() - 512), end = at + 512; at < end; ++at) {
                content[at] = static_cast<char>(random());
            }
            break;
        default:
            flip(random() % content.size());
    }
}

class Damage : public testing::Test {
protected:
    /// Has the journal be judged with files that `change` makes of the sound ones.
    template <class Change>
    void expectNothingSilent(const StoreFiles& sound, const Change& change) {
        std::mt19937 random(seed);
        SCOPED_TRACE("seed " + std::to_string(seed));
        const DamagedJournal::Answers right = journal_.answersOf(sound);
        ASSERT_NE(right.recorded.find("Party 7"), std::string::npos);
        ASSERT_NE(right.listAfterBoth, right.listAfterRecord);
        unsigned reported = 0;
        const unsigned count = rounds(250);
        for (unsigned round = 0; round < count; ++round) {
            StoreFiles damaged = sound;
            change(damaged, random);
            const DamagedJournal::Judgement judgement = journal_.judge(damaged, right);
            ASSERT_EQ(judgement.silent, "") << "round " << round;
            reported += judgement.isReported ? 1 : 0;
        }
        EXPECT_GT(reported, count / 3);
        std::cout << "files damaged: " << count << ", of them noticed: " << reported
                  << ", the rest without effect on any entry\n";
    }

    const TemporaryFolder folder_;
    DamagedJournal journal_{folder_.file(".")};
};

TEST_F(Damage, OfAJournalIsNeverReadOrWrittenWrongWithoutAWord) {
    expectNothingSilent(journal_.closed(),
                        [](StoreFiles& files, std::mt19937& random) { damage(files.database, random, pageSize); });
}

TEST_F(Damage, OfAJournalIsNeverReadOrWrittenWrongWithoutAWordAfterAKill) {
    ASSERT_GT(journal_.logBeforeLast(), 100'000U);
    expectNothingSilent(journal_.killed(), [this](StoreFiles& files, std::mt19937& random) {
        if (random() % 4 == 0) {
            damage(files.database, random, pageSize);
            return;
        }
        // A log that lost its end is that of a moment before; nobody can tell.
        char& byte = files.log[random() % journal_.logBeforeLast()];
        byte = static_cast<char>(byte ^ (1 << random() % 8));
    });
}

}  // namespace
