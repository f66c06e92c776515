#pragma once

#include "sandbox/service/Exchange.h"

#include <string>

namespace sandbox {

/// What one request is signed with.
struct SignedRequest {
    std::string timeStamp;
    std::string plain; ///< the parameters as they were encrypted
    std::string body; ///< as it came
    std::string signature; ///< as it came
};

/// The text that is signed: the timestamp, a dash, the parameters with their slashes bare.
std::string signedTextOf(const std::string &timeStamp, const std::string &plain);
/// \return the signature of \p text, as the header has it
std::string signatureOf(const std::string &text);

/// Compares a wrong signature with what was expected. The usual mistakes are tried, so that the
/// text that was signed in its place is often known.
/// \param secret the 32 bytes of the AES key, \p client the client key: both are mistaken for the
/// signing key
Comparison compareSignature(
    const SignedRequest &request, const std::string &secret, const std::string &client);

}
