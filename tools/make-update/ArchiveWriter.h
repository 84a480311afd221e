#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace navora {

// Packs an installed Navora as a release: everything below `installation`, and the record that
// makes it an installation of its own, in one folder "navora" of a compressed archive. The same
// input always gives the same bytes. The reason if that fails, or if there is something that would
// be refused in an update, as links that lead out.
std::optional<std::string> writeArchive(const std::filesystem::path& installation,
                                        const std::string& version,
                                        const std::filesystem::path& archive);

}  // namespace navora
