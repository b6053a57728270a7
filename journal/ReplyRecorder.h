#ifndef CALLJOURNAL_REPLYRECORDER_H
#define CALLJOURNAL_REPLYRECORDER_H

#include <functional>
#include <string>

#include "DataAccessServiceIfc.h"

namespace calljournal {

/// Stands between the adapter and the data access service and keeps the last reply, which the adapter drops.
class ReplyRecorder : public DataAccessServiceIfc {
public:
    /// Called with each request and its reply.
    using Trace = std::function<void(const std::string& request, const std::string& reply)>;

    /// Passes everything on to `service`, which must outlive this object.
    explicit ReplyRecorder(DataAccessServiceIfc& service) : service_(service) {}

    std::string processRequest(const std::string& request) override {
        lastReply_.clear();
        lastReply_ = service_.processRequest(request);
        if (trace_) {
            trace_(request, lastReply_);
        }
        return lastReply_;
    }

    /// The last reply; empty after an exception of the service.
    const std::string& lastReply() const { return lastReply_; }

    void setTrace(Trace trace) { trace_ = std::move(trace); }

private:
    DataAccessServiceIfc& service_;
    std::string lastReply_;
    Trace trace_;
};

}  // namespace calljournal

#endif
