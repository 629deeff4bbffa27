#pragma once

#include <cstdint>
#include <string>

namespace kw {

// The types of the members by their names in the rows.
namespace types {

using Boolean = bool;
using Integer = std::int16_t;
using Text = std::string;

}  // namespace types

// The properties, by their numbers in the type library.
enum class PropertyId : std::int32_t {
#define PROPERTY(name, number, type, help) name = number,
#define LET_PROPERTY(name, number, type, help) name = number,
#include "members/Members.def"
};

// The events, by their numbers in the type library.
enum class EventId : std::int32_t {
#define EVENT(name, number, parameters, help) name = number,
#include "members/Events.def"
};

}  // namespace kw
