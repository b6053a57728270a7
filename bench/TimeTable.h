#pragma once

#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include <vector>

namespace bench {

/// Takes the medians of the runs and prints them, job by job, against the library's own.
class TimeTable : public benchmark::BenchmarkReporter {
public:
    /// The contender that all others are compared with.
    static constexpr const char* library = "library";

    /// Announces a benchmark; the table keeps this order. Returns its name.
    std::string add(const std::string& job, const std::string& contender, std::size_t bytes, std::size_t entries);

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override;

    void print(std::FILE* out) const;

    /// Returns how many times the library's time the contender takes, or 0 if one of them was not measured.
    double ratio(const std::string& job, const std::string& contender) const;

private:
    struct Row {
        std::string contender;
        std::size_t bytes;
        std::size_t entries;
        double nanoseconds;
    };
    struct Job {
        std::string name;
        std::vector<Row> rows;
    };

    const Row* find(const std::string& job, const std::string& contender) const;

    std::vector<Job> jobs_;
};

}  // namespace bench
