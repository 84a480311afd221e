#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace navora {

// Packs a release: everything below `installation`, and the record that makes it an Installation,
// in the folder "navora" of a compressed archive. The same input always gives the same bytes.
// Returns the reason if that fails or the updater would refuse a member, such as a link that leads
// out.
std::optional<std::string> writeArchive(const std::filesystem::path& installation,
                                        const std::string& version,
                                        const std::filesystem::path& archive);

}  // namespace navora
