#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace parloquin {

struct JsonType;

/// \brief One field of a model, reached without knowing the model's type.
struct JsonMember {
    std::string_view key;
    const JsonType *type; ///< of the value, the optional around it taken off
    bool isOptional;
    const void *(*peek)(const void *model); ///< null while an optional is empty
    void *(*make)(void *model); ///< the value to write to; an optional is filled first
};

/// \brief How values of one type are read and written.
///
/// Tables rather than templates: coder, decoder and dump are compiled once, and a model costs each
/// file that uses it no more than its table.
struct JsonType {
    /// What a decoder holds room for, per model.
    static constexpr std::size_t maxMembers = 16;

    enum class Kind { text, boolean, integerEnum, textEnum, list, model };

    struct Rows { // of an enumeration
        std::size_t count = 0;
        int (*integer)(std::size_t row) = nullptr;
        std::string_view (*text)(std::size_t row) = nullptr;
        std::size_t (*rowOf)(const void *value) = nullptr;
        void (*assign)(void *value, std::size_t row) = nullptr;
    };

    struct List {
        const JsonType *item = nullptr;
        qsizetype (*size)(const void *list) = nullptr;
        const void *(*at)(const void *list, qsizetype index) = nullptr;
        void (*reserve)(void *list, qsizetype size) = nullptr;
        void *(*resize)(void *list, qsizetype size) = nullptr; ///< \return the first of its items
        std::size_t itemSize = 0; ///< bytes
    };

    Kind kind;
    Rows rows {};
    List list {};
    std::span<const JsonMember> members {};
};

template <class T> struct JsonTypeOf;
template <class T> inline constexpr JsonType jsonType = JsonTypeOf<T>::make();

template <class T> struct WithoutOptional {
    using Type = T;
    static constexpr bool isOptional = false;
};
template <class T> struct WithoutOptional<std::optional<T>> {
    using Type = T;
    static constexpr bool isOptional = true;
};

template <class Model, std::size_t index> constexpr JsonMember jsonMember()
{
    constexpr auto field = std::get<index>(Model::fields());
    using Value = std::remove_reference_t<decltype(std::declval<Model &>().*field.member)>;
    using Bare = WithoutOptional<Value>;
    return {
        .key = field.key,
        .type = &jsonType<typename Bare::Type>,
        .isOptional = Bare::isOptional,
        .peek = [](const void *model) -> const void * {
            constexpr auto member = std::get<index>(Model::fields()).member;
            const auto &value = static_cast<const Model *>(model)->*member;
            if constexpr (Bare::isOptional)
                return value ? &*value : nullptr;
            else
                return &value;
        },
        .make = [](void *model) -> void * {
            constexpr auto member = std::get<index>(Model::fields()).member;
            auto &value = static_cast<Model *>(model)->*member;
            if constexpr (Bare::isOptional)
                return &value.emplace();
            else
                return &value;
        },
    };
}

template <class Model, class Indices> struct JsonMembersOf;
template <class Model, std::size_t... indices>
struct JsonMembersOf<Model, std::index_sequence<indices...>> {
    static_assert(sizeof...(indices) <= JsonType::maxMembers);
    static constexpr std::array members { jsonMember<Model, indices>()... };
};

template <class T> struct JsonTypeOf {
    static constexpr JsonType make()
    {
        if constexpr (std::is_enum_v<T>)
            return enumeration();
        else
            return {
                .kind = JsonType::Kind::model,
                .members = JsonMembersOf<T,
                    std::make_index_sequence<std::tuple_size_v<decltype(T::fields())>>>::members,
            };
    }

private:
    static constexpr JsonType enumeration()
    {
        constexpr auto &rows = RawValues<T>::rows;
        using Raw = typename std::remove_cvref_t<decltype(rows)>::value_type::second_type;
        constexpr bool isInteger = std::is_same_v<Raw, int>;
        JsonType type { .kind =
                            isInteger ? JsonType::Kind::integerEnum : JsonType::Kind::textEnum };
        type.rows.count = rows.size();
        if constexpr (isInteger)
            type.rows.integer = [](std::size_t row) { return RawValues<T>::rows[row].second; };
        else
            type.rows.text = [](std::size_t row) {
                return std::string_view(RawValues<T>::rows[row].second);
            };
        type.rows.rowOf = [](const void *value) {
            std::size_t row = 0;
            while (RawValues<T>::rows[row].first != *static_cast<const T *>(value))
                ++row;
            return row;
        };
        type.rows.assign = [](void *value, std::size_t row) {
            *static_cast<T *>(value) = RawValues<T>::rows[row].first;
        };
        return type;
    }
};

template <> struct JsonTypeOf<QString> {
    static constexpr JsonType make() { return { .kind = JsonType::Kind::text }; }
};

template <> struct JsonTypeOf<bool> {
    static constexpr JsonType make() { return { .kind = JsonType::Kind::boolean }; }
};

template <class T> struct JsonTypeOf<QList<T>> {
    static constexpr JsonType make()
    {
        using Items = QList<T>;
        return {
            .kind = JsonType::Kind::list,
            .list = {
                .item = &jsonType<T>,
                .size = [](const void *list) { return static_cast<const Items *>(list)->size(); },
                .at = [](const void *list, qsizetype index) -> const void * {
                    return &static_cast<const Items *>(list)->at(index);
                },
                .reserve = [](void *list,
                               qsizetype size) { static_cast<Items *>(list)->reserve(size); },
                .resize = [](void *list, qsizetype size) -> void * {
                    auto *const items = static_cast<Items *>(list);
                    items->resize(size);
                    return items->data();
                },
                .itemSize = sizeof(T),
            },
        };
    }
};

} // namespace parloquin
