#include "app/rules/rule_applications.h"

#include <algorithm>

#include "platform/text/comparison.h"

namespace app {

using platform::ApplicationEntry;

namespace {

bool contains(const std::vector<ApplicationEntry>& entries, const QString& identifier) {
    return std::any_of(entries.begin(), entries.end(), [&](const ApplicationEntry& entry) {
        return entry.identifier == identifier;
    });
}

}  // namespace

std::vector<ApplicationEntry> applicationsForExtensions(const QStringList& extensions) {
    std::vector<ApplicationEntry> candidates;
    for (const QString& extension : extensions) {
        std::vector<ApplicationEntry> found = platform::applicationsForExtension(extension);
        if (found.empty()) {
            continue;
        }
        if (candidates.empty()) {
            candidates = std::move(found);
            continue;
        }
        std::erase_if(candidates, [&](const ApplicationEntry& candidate) {
            return !contains(found, candidate.identifier);
        });
        if (candidates.empty()) {
            break;
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const ApplicationEntry& a, const ApplicationEntry& b) {
                         return platform::compareStringsNaturally(a.name, b.name) < 0;
                     });
    return candidates;
}

QString proposedApplication(const std::vector<ApplicationEntry>& among, const QString& current,
                            const QStringList& extensions) {
    if (contains(among, current)) {
        return current;
    }
    const std::vector<ApplicationEntry> preferred =
        platform::applicationsForExtension(extensions.value(0));
    if (!preferred.empty() && contains(among, preferred.front().identifier)) {
        return preferred.front().identifier;
    }
    return among.empty() ? QString() : among.front().identifier;
}

}  // namespace app
