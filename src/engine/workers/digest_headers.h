#pragma once

#include <optional>

#include "engine/record/checksum.h"
#include "engine/workers/download_worker_delegate.h"

namespace engine {

/// What the server says that the whole file adds up to: "Repr-Digest", and of an answer that is not
/// a part "Content-Digest" (RFC 9530), "Digest" (RFC 3230) and "Content-MD5" (RFC 1864). Nothing:
/// it says nothing, or not of the bytes that end up in the file, since they come coded.
[[nodiscard]] std::optional<Checksum> checksumInHeaders(const WorkerResponse& response);

}  // namespace engine
