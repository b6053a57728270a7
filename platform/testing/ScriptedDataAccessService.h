#ifndef CALLJOURNAL_SCRIPTEDDATAACCESSSERVICE_H
#define CALLJOURNAL_SCRIPTEDDATAACCESSSERVICE_H

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "DataAccessServiceIfc.h"

namespace calljournal {

/// A data access service for tests: it answers what it is told to and keeps what it was asked.
///
///     calljournal::ScriptedDataAccessService service;
///     service.next(reply).nextFails(std::runtime_error("the database is gone"));
///     service.whenContains("<Schema name=\"CallLogMissedCalls\">", list);
///     adapter.init(&service);
///     ...
///     expect(service.transcript()[0].request == "<?xml ...");
///
/// Who answers a request: first the queue, whose answers serve once, in their order; when it is empty, the rules, the
/// one stated last first, each as often as it fits; and when none fits, the usual answer, an empty text. One thread at a
/// time.
class ScriptedDataAccessService : public DataAccessServiceIfc {
public:
    typedef std::function<bool(const std::string& request)> Matcher;
    /// Makes a reply, or throws what the service is to throw.
    typedef std::function<std::string(const std::string& request)> Answer;

    /// One request and what came of it.
    struct Exchange {
        std::string request;
        std::string reply;  ///< Empty after a failure.
        bool failed;        ///< The answer threw; the library's caller saw the exception.
    };

    /// Carries out the script.
    std::string processRequest(const std::string& request) override {
        const std::size_t place = transcript_.size();
        transcript_.push_back(Exchange{request, std::string(), true});
        const std::string reply = takeAnswer(request)(request);
        transcript_[place].reply = reply;
        transcript_[place].failed = false;
        return reply;
    }

    /// Put an answer at the end of the queue.
    ScriptedDataAccessService& next(const std::string& reply) { return next(text(reply)); }
    ScriptedDataAccessService& next(const char* reply) { return next(std::string(reply)); }
    ScriptedDataAccessService& next(Answer answer) {
        queue_.push_back(std::move(answer));
        return *this;
    }

    /// Puts a failure at the end of the queue: the request throws a copy of `failure`.
    template <class Failure>
    ScriptedDataAccessService& nextFails(const Failure& failure) {
        return next(failing(failure));
    }

    /// Answer each request that `matches`, or that holds `part`.
    ScriptedDataAccessService& when(Matcher matches, const std::string& reply) {
        return when(std::move(matches), text(reply));
    }
    ScriptedDataAccessService& when(Matcher matches, const char* reply) {
        return when(std::move(matches), std::string(reply));
    }
    ScriptedDataAccessService& when(Matcher matches, Answer answer) {
        rules_.push_back(std::make_pair(std::move(matches), std::move(answer)));
        return *this;
    }
    template <class Reply>
    ScriptedDataAccessService& whenContains(const std::string& part, const Reply& reply) {
        return when(holding(part), reply);
    }

    /// Fail for each request that `matches`, or that holds `part`, with a copy of `failure`.
    template <class Failure>
    ScriptedDataAccessService& failWhen(Matcher matches, const Failure& failure) {
        return when(std::move(matches), failing(failure));
    }
    template <class Failure>
    ScriptedDataAccessService& failWhenContains(const std::string& part, const Failure& failure) {
        return failWhen(holding(part), failure);
    }

    /// Replace the usual answer.
    ScriptedDataAccessService& otherwise(const std::string& reply) { return otherwise(text(reply)); }
    ScriptedDataAccessService& otherwise(const char* reply) { return otherwise(std::string(reply)); }
    ScriptedDataAccessService& otherwise(Answer answer) {
        usual_ = std::move(answer);
        return *this;
    }

    /// Everything that was asked so far, in order.
    const std::vector<Exchange>& transcript() const { return transcript_; }

    /// The requests alone, in order.
    std::vector<std::string> requests() const {
        std::vector<std::string> texts;
        for (const Exchange& exchange : transcript_) {
            texts.push_back(exchange.request);
        }
        return texts;
    }

    /// How many queued answers nobody has asked for yet: a test that expects them all checks for 0.
    std::size_t unused() const { return queue_.size(); }

    /// Forgets the transcript; the script stays.
    void clearTranscript() { transcript_.clear(); }

private:
    static Answer text(const std::string& reply) {
        return [reply](const std::string&) { return reply; };
    }

    template <class Failure>
    static Answer failing(const Failure& failure) {
        return [failure](const std::string&) -> std::string { throw failure; };
    }

    static Matcher holding(const std::string& part) {
        return [part](const std::string& request) { return request.find(part) != std::string::npos; };
    }

    Answer takeAnswer(const std::string& request) {
        if (!queue_.empty()) {
            const Answer answer = std::move(queue_.front());
            queue_.pop_front();
            return answer;
        }
        for (auto rule = rules_.rbegin(); rule != rules_.rend(); ++rule) {
            if (rule->first(request)) {
                return rule->second;
            }
        }
        return usual_;
    }

    std::deque<Answer> queue_;
    std::vector<std::pair<Matcher, Answer>> rules_;
    Answer usual_ = text(std::string());
    std::vector<Exchange> transcript_;
};

}  // namespace calljournal

#endif
