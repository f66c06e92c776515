# PkgConfig::HttpLib, the HTTP library of the sandbox and of the tests that call it. Newer versions of
# its header call libcrypto, which its own description does not name.
include_guard(GLOBAL)
find_package(OpenSSL 3 REQUIRED COMPONENTS Crypto)
find_package(PkgConfig REQUIRED)
pkg_check_modules(HttpLib REQUIRED IMPORTED_TARGET GLOBAL cpp-httplib>=0.11)
target_link_libraries(PkgConfig::HttpLib INTERFACE OpenSSL::Crypto)
