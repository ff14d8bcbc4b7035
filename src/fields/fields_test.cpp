#include "fields/fields.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "fields/stand_ins.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/document/document.h"

namespace vndoc6::fields {
namespace {

using automation::Arguments;
using automation::CallKind;
using automation::Error;
using automation::Make;
using automation::Object;
using automation::Ref;
using automation::RegisterFactory;
using automation::Variant;

// A host's own object. It refuses an empty text.
class HostObject : public Object {
 public:
  std::string_view TypeName() const override { return "HostObject"; }
  int32_t FindMember(TextView name) override {
    if (name == u"Text") return 1;
    return name == u"Database" ? 2 : automation::kNoMember;
  }
  Variant InvokeMember(int32_t id, CallKind kind, const Arguments& arguments) override {
    if (automation::Allows(kind, CallKind::kGet)) return u"written by the host: " + text_;
    const Variant& value = arguments.positional.back();
    if (id == 2) {
      database_ = value.ToObject();
    } else if (value.ToText().empty()) {
      throw Error(automation::kInvalidCall);
    } else {
      text_ = value.ToText();
    }
    return {};
  }

  Text text_;
  Ref<Object> database_;
};

struct Kind {
  const char16_t* programmatic_id;
  const char* stand_in;
  Ref<Object> (*make)(const Text& text);
};
const Kind kKinds[] = {{u"Fields.FieldDefs", "FieldDefs", &MakeFieldDefs},
                       {u"Fields.FieldValues", "FieldValues", &MakeFieldValues},
                       {u"Forms2.FormDef", "FormDef", &MakeFormDef}};

TEST(Fields, AStandInGivesItsTextBackUnchanged) {
  for (const Kind& kind : kKinds) {
    const Text text(u"any \"text\":\0\xD800", 13);
    const Ref<Object> object = kind.make(text);
    EXPECT_EQ(object->TypeName(), kind.stand_in);
    EXPECT_EQ(TextOf(*object), text);
    automation::Put(*object, u"text", {u"changed"});
    EXPECT_EQ(TextOf(*object), u"changed");
  }
}

TEST(Fields, AHostsObjectTakesTheStandInsPlaceWhileItIsRegistered) {
  for (const Kind& kind : kKinds) {
    RegisterFactory(kind.programmatic_id, [] { return Ref<Object>(Make<HostObject>()); });
    EXPECT_EQ(TextOf(*kind.make(u"x")), u"written by the host: x");
    EXPECT_THROW(kind.make(u""), Error);
    RegisterFactory(kind.programmatic_id, {});
    EXPECT_EQ(kind.make(u"x")->TypeName(), kind.stand_in);
  }
}

TEST(Fields, AHostMayLetGoOfTheOwnerWhileItsObjectIsMade) {
  auto owner = Make<vnDocument>();
  RegisterFactory(u"Fields.FieldDefs", [&owner] {
    owner = nullptr;
    return Ref<Object>(Make<FieldDefs>());
  });
  EXPECT_EQ(owner->FieldDefsSteps()->TypeName(), "FieldDefs");
  RegisterFactory(u"Fields.FieldDefs", {});
}

TEST(Fields, FieldDefinitionsTakeADatabase) {
  const Ref<Object> database = Make<FormDef>();
  const Ref<Object> own = MakeFieldDefs(u"");
  EXPECT_FALSE(automation::Get(*own, u"Database").ToObject());
  SetDatabase(*own, database.get());
  EXPECT_EQ(automation::Get(*own, u"Database").ToObject(), database);
  const auto host = Make<HostObject>();
  SetDatabase(*host, database.get());
  EXPECT_EQ(host->database_, database);
  EXPECT_THROW(SetDatabase(*MakeFormDef(u""), database.get()), Error);
}

}  // namespace
}  // namespace vndoc6::fields
