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

/// A data access service for tests: it gives the answers that it was given and keeps what it was asked.
///
///     calljournal::ScriptedDataAccessService service;
///     service.when("read_request", "<Schema name=\"CallLogMissedCalls\"></Schema>")
///         .next("<Result>ok</Result>")
///         .next(calljournal::ScriptedDataAccessService::failing(std::runtime_error("the database is gone")));
///     adapter.init(&service);
///
/// Who answers a request: first the queue, whose answers serve once each, in their order; when it is empty, the rules,
/// the one stated last first; when none fits, the usual answer, at first "ok". A reply in the script is a text,
/// or a function that makes one from the request and may throw, or `failing(...)`. One thread at a time.
class ScriptedDataAccessService : public DataAccessServiceIfc {
public:
    typedef std::function<std::string(const std::string& request)> Answer;
    typedef std::function<bool(const std::string& request)> Matcher;

    /// One request and what came of it.
    struct Exchange {
        std::string request;
        std::string reply;  ///< Empty if there was none.
        bool failed;        ///< The answer threw; what it threw has passed to the caller.
    };

    /// Returns the answer that throws a copy of `failure`.
    template <class Failure>
    static Answer failing(const Failure& failure) {
        return [failure](const std::string&) -> std::string { throw failure; };
    }

    /// Puts an answer at the end of the queue.
    template <class Reply>
    ScriptedDataAccessService& next(const Reply& reply) {
        queue_.push_back(answering(reply));
        return *this;
    }

    /// Answers every request that `which` fits: a text that the request holds, or a Matcher.
    template <class Which, class Reply>
    ScriptedDataAccessService& when(const Which& which, const Reply& reply) {
        rules_.push_front(std::make_pair(matching(which), answering(reply)));
        return *this;
    }

    /// Replaces the usual answer.
    template <class Reply>
    ScriptedDataAccessService& otherwise(const Reply& reply) {
        usual_ = answering(reply);
        return *this;
    }

    /// Carries out the script. The answer finds its request at the end of the transcript already.
    std::string processRequest(const std::string& request) override {
        const Answer answer = takeAnswer(request);
        const std::size_t place = transcript_.size();
        transcript_.push_back(Exchange{request, std::string(), true});
        const std::string reply = answer(request);
        transcript_[place].reply = reply;
        transcript_[place].failed = false;
        return reply;
    }

    /// What was asked so far, in order.
    const std::vector<Exchange>& transcript() const { return transcript_; }

    /// The requests alone, in order.
    std::vector<std::string> requests() const {
        std::vector<std::string> texts;
        for (const Exchange& exchange : transcript_) {
            texts.push_back(exchange.request);
        }
        return texts;
    }

    /// How many answers of the queue were not asked for yet; a test that expects them all looks for 0.
    std::size_t unused() const { return queue_.size(); }

    /// Forgets the transcript; the script stays. Not for use by an answer.
    void clearTranscript() { transcript_.clear(); }

private:
    static Answer answering(const Answer& answer) { return answer; }
    static Answer answering(const std::string& reply) {
        return [reply](const std::string&) { return reply; };
    }

    static Matcher matching(const Matcher& matcher) { return matcher; }
    static Matcher matching(const std::string& part) {
        return [part](const std::string& request) { return request.find(part) != std::string::npos; };
    }

    Answer takeAnswer(const std::string& request) {
        if (!queue_.empty()) {
            Answer answer = std::move(queue_.front());
            queue_.pop_front();
            return answer;
        }
        for (const std::pair<Matcher, Answer>& rule : rules_) {
            if (rule.first(request)) {
                return rule.second;
            }
        }
        return usual_;
    }

    std::deque<Answer> queue_;
    std::deque<std::pair<Matcher, Answer>> rules_;  ///< The one stated last is first.
    Answer usual_ = answering("ok");
    std::vector<Exchange> transcript_;
};

}  // namespace calljournal

#endif
