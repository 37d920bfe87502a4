#include "http/request/challenge_side.h"

#include <algorithm>

namespace http {

bool ChallengeSide::isRefused(const platform::HTTPCredentials& other) const {
    return std::find(refused.begin(), refused.end(), other) != refused.end();
}

void ChallengeSide::takeBackRefusal(const QString& username, const QString& password) {
    std::erase_if(refused, [&](const platform::HTTPCredentials& entry) {
        return entry.username == username && entry.password == password;
    });
}

void ChallengeSide::forgetChallenge() {
    authentication.reset();
    lookUp = LookUp::NotBegun;
    saved.reset();
}

}  // namespace http
