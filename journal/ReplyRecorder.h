#pragma once

#include <functional>
#include <string>

#include "DataAccessServiceIfc.h"

namespace calljournal {

/// Is between the adapter and the data access service and keeps how the last reply starts: the adapter
/// drops replies.
class ReplyRecorder : public DataAccessServiceIfc {
public:
    /// Called with each request and its reply.
    using Trace = std::function<void(const std::string& request, const std::string& reply)>;

    /// Passes everything on to `service`, which must outlive this object.
    explicit ReplyRecorder(DataAccessServiceIfc& service) : service_(service) {}

    std::string processRequest(const std::string& request) override {
        lastReply_.clear();
        std::string reply = service_.processRequest(request);
        if (trace_) {
            trace_(request, reply);
        }
        lastReply_.assign(reply, 0, keptLength);
        return reply;
    }

    /// The start of the last reply, which says how it went; empty after an exception of the service.
    const std::string& lastReply() const { return lastReply_; }

    void setTrace(Trace trace) { trace_ = std::move(trace); }

private:
    static constexpr std::size_t keptLength = 4096;  // a list may be hundreds of megabytes long

    DataAccessServiceIfc& service_;
    std::string lastReply_;
    Trace trace_;
};

}  // namespace calljournal
