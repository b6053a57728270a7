#include "TimeTable.h"

#include <algorithm>

namespace bench {

std::string TimeTable::add(const std::string& job, const std::string& contender, std::size_t bytes,
                           std::size_t entries) {
    auto found = std::find_if(jobs_.begin(), jobs_.end(), [&](const Job& known) { return known.name == job; });
    if (found == jobs_.end()) {
        jobs_.push_back({job, {}});
        found = jobs_.end() - 1;
    }
    found->rows.push_back({contender, bytes, entries, 0});
    return job + "/" + contender;
}

void TimeTable::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.aggregate_name != "median") {
            continue;
        }
        for (Job& job : jobs_) {
            for (Row& row : job.rows) {
                if (run.run_name.function_name == job.name + "/" + row.contender) {
                    row.nanoseconds = run.GetAdjustedCPUTime();
                }
            }
        }
    }
}

const TimeTable::Row* TimeTable::find(const std::string& job, const std::string& contender) const {
    for (const Job& known : jobs_) {
        for (const Row& row : known.rows) {
            if (known.name == job && row.contender == contender && row.nanoseconds > 0) {
                return &row;
            }
        }
    }
    return nullptr;
}

double TimeTable::ratio(const std::string& job, const std::string& contender) const {
    const Row* own = find(job, library);
    const Row* other = find(job, contender);
    return own == nullptr || other == nullptr ? 0 : other->nanoseconds / own->nanoseconds;
}

void TimeTable::print(std::FILE* out) const {
    std::fprintf(out, "%-28s %-28s %12s %10s %12s\n", "# job", "done by", "us/entry", "ns/byte", "times library");
    for (const Job& job : jobs_) {
        for (const Row& row : job.rows) {
            if (row.nanoseconds > 0) {
                std::fprintf(out, "%-28s %-28s %12.3f %10.3f %12.2f\n", job.name.c_str(), row.contender.c_str(),
                             row.nanoseconds / 1000 / static_cast<double>(row.entries),
                             row.nanoseconds / static_cast<double>(row.bytes), ratio(job.name, row.contender));
            }
        }
    }
}

}  // namespace bench
