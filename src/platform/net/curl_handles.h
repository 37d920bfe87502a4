#pragma once

#include <curl/curl.h>

#include <memory>

namespace platform {

using CurlMulti = std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)>;
using CurlEasy = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using CurlShare = std::unique_ptr<CURLSH, decltype(&curl_share_cleanup)>;

/// Lines for a request, in order.
class CurlLines {
public:
    /// False: no memory.
    bool append(const char* line) {
        curl_slist* const longer = curl_slist_append(list_.get(), line);
        if (longer == nullptr)
            return false;
        // The head of the list changes only when it had none.
        if (longer != list_.get())
            list_.reset(longer);
        return true;
    }
    /// Null: no lines.
    [[nodiscard]] curl_slist* get() const { return list_.get(); }

private:
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> list_{nullptr,
                                                                      &curl_slist_free_all};
};

}  // namespace platform
