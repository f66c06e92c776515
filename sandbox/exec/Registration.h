#pragma once

#include <filesystem>
#include <string>

namespace sandbox {

/// \brief The stand-in messenger as the handler of its links, for this process and what it starts.
///
/// A temporary folder stands in front of XDG_DATA_DIRS and XDG_CONFIG_DIRS as long as this lives;
/// the settings of the user stay what they are, and go first.
class Registration {
public:
    /// \param service where the messenger is to find the service
    /// \throws std::runtime_error where there is no messenger, or no place for the folder
    explicit Registration(const std::string &service);
    ~Registration();
    Registration(const Registration &) = delete;
    Registration &operator=(const Registration &) = delete;

    /// \return what the desktop says against it; empty when links reach the messenger
    std::string complaint() const;

private:
    std::filesystem::path m_folder;
};

}
