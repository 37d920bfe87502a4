#include "http/request/challenge_side.h"

#include <algorithm>

namespace http {

namespace {

auto isFor(const QString& username, const QString& password) {
    return [&](const platform::HTTPCredentials& credentials) {
        return credentials.username == username && credentials.password == password;
    };
}

}  // namespace

bool ChallengeSide::isRefused(const platform::HTTPCredentials& other) const {
    return std::find(refused.begin(), refused.end(), other) != refused.end();
}

bool ChallengeSide::isRefused(const QString& username, const QString& password) const {
    return std::any_of(refused.begin(), refused.end(), isFor(username, password));
}

void ChallengeSide::takeBackRefusal(const QString& username, const QString& password) {
    std::erase_if(refused, isFor(username, password));
}

void ChallengeSide::forgetChallenge() {
    authentication.reset();
    lookUp = LookUp::NotBegun;
    saved.reset();
}

}  // namespace http
