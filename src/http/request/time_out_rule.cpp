#include "http/request/time_out_rule.h"

namespace http {

bool shouldTimeOut(const Silence& silence) {
    if (!silence.isScheduled || !silence.sinceLastActivity || silence.timeOutSeconds <= 0)
        return false;
    if (*silence.sinceLastActivity <= silence.timeOutSeconds)
        return false;
    if (silence.postLength == 0)
        return true;
    if (silence.uploadBufferSize > 0 && silence.totalBytesSent > silence.uploadBufferSize)
        return true;
    return *silence.sinceLastActivity > silence.timeOutSeconds * 1.5;
}

}  // namespace http
