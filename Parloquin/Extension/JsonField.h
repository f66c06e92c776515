#pragma once

namespace parloquin {

/// \brief One member of a wire model under its JSON key.
///
/// A model lists its members once, in `static constexpr auto fields()`; that list drives the
/// encoder, the decoder and the paths in decoding errors.
template <class Model, class Value> struct JsonField {
    const char *key;
    Value Model::*member;
};

template <class Model, class Value>
constexpr JsonField<Model, Value> field(const char *key, Value Model::*member)
{
    return { key, member };
}

/// \brief Texts of an enumeration whose raw values are strings or integers; specialise per type.
///
/// `static constexpr std::array<std::pair<Enum, Raw>, n> rows`, Raw being `const char *` or `int`.
template <class Enum> struct RawValues;

} // namespace parloquin
