// Values as JSON. The forms are in every JSON file that the program wrote: never change one.
//
//   text             "text"; one with lone surrogates {"Utf16": [55296, 65]}
//   Boolean, Long    true, 15
//   Double           15.5 or 15.0: always with a point or an exponent
//   Short, Single    {"Short": 15}, {"Single": 1.5}
//   Currency, Date   {"Currency": "1.5"}, {"Date": "2026-03-01 14:30:00"}, or days where no text
//                    says it exactly
//   Error            {"Error": -2147352572}
//   Null, Empty      {"Null": null}, null; Nothing is null too
//   picture          {"Picture": "base64"}
//   not a number     {"Double": "nan"}, "inf", "-inf"
//
// A property whose type is known stands without the wrapping: "Left": 1.5. Properties of an
// enumeration are their number.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "command.h"
#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/variant.h"

namespace vndoc {

// A value in JSON is of another kind than its reader expects.
class JsonFormError : public Failure {
 public:
  JsonFormError() : Failure("a value of another form is expected") {}
};

// Appends a value, as one whose type the reader knows unless the type is kVariant.
void AppendJson(const vndoc6::automation::Variant& value, vndoc6::automation::TypeKind type,
                std::string& out);
void AppendJsonText(vndoc6::TextView text, std::string& out);

// The value back, for a member of that type; Failure when JSON of that form stands for none.
vndoc6::automation::Variant FromJson(
    const nlohmann::json& json,
    vndoc6::automation::TypeKind type = vndoc6::automation::TypeKind::kVariant);

}  // namespace vndoc
