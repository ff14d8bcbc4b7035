// A C++ host that knows the library by the header made of its published contract, and by nothing
// else: every interface is called through its slots.
#include "tests/windows/server.h"

#include "VNDoc6.h"

namespace vndoc6::com {
namespace {

class EarlyBoundTest : public ServerTest {
 protected:
  template <class Interface>
  ComPtr<Interface> Make(const char* class_name) {
    auto object = server_.Create(class_name).As<Interface>();
    EXPECT_TRUE(object) << class_name;
    return object;
  }

  template <class Interface>
  void ExpectCount(const char* class_name) {
    const auto collection = Make<Interface>(class_name);
    LONG count = -1;
    EXPECT_EQ(collection->get_Count(&count), S_OK);
    EXPECT_EQ(count, 0) << class_name;
    ComPtr<IUnknown> members;
    EXPECT_EQ(collection->get_NewEnum(members.Receive()), S_OK);
    EXPECT_TRUE(members.As<IEnumVARIANT>()) << class_name;
  }

  template <class Interface>
  void ExpectText(const char* class_name, HRESULT (STDMETHODCALLTYPE Interface::*put)(BSTR),
                  HRESULT (STDMETHODCALLTYPE Interface::*get)(BSTR*)) {
    const auto object = Make<Interface>(class_name);
    EXPECT_EQ((object.get()->*put)(OwnedBstr(u"\u00E9\u4E2D").get()), S_OK);
    OwnedBstr text;
    EXPECT_EQ((object.get()->*get)(text.Receive()), S_OK);
    EXPECT_EQ(text.text(), u"\u00E9\u4E2D") << class_name;
  }

  template <class Interface, class Number>
  void ExpectNumber(const char* class_name, HRESULT (STDMETHODCALLTYPE Interface::*put)(Number),
                    HRESULT (STDMETHODCALLTYPE Interface::*get)(Number*)) {
    const auto object = Make<Interface>(class_name);
    EXPECT_EQ((object.get()->*put)(Number{5}), S_OK);
    Number number{};
    EXPECT_EQ((object.get()->*get)(&number), S_OK);
    EXPECT_EQ(number, Number{5}) << class_name;
  }
};

TEST_F(EarlyBoundTest, EveryCollectionCountsAndEnumerates) {
  ExpectCount<_vnSteps>("vnSteps");
  ExpectCount<_vnLinks>("vnLinks");
  ExpectCount<_vnConditions>("vnConditions");
  ExpectCount<_vnTasks>("vnTasks");
  ExpectCount<_vnContainers>("vnContainers");
  ExpectCount<_vnFiles>("vnFiles");
  ExpectCount<_vnJumps>("vnJumps");
  ExpectCount<_vnItems>("vnItems");
  ExpectCount<_vnRevisions>("vnRevisions");
  ExpectCount<_vnTitles>("vnTitles");
  ExpectCount<_vnTitleRefs>("vnTitleRefs");
  ExpectCount<_vnTemplates>("vnTemplates");
  ExpectCount<_Properties>("Properties");
}

TEST_F(EarlyBoundTest, EveryOtherInterfaceKeepsWhatIsPut) {
  ExpectText("vnDocument", &_vnDocument::put_ConnectionString, &_vnDocument::get_ConnectionString);
  ExpectText("vnStep", &_vnStep::put_Label, &_vnStep::get_Label);
  ExpectText("vnLink", &_vnLink::put_Text, &_vnLink::get_Text);
  ExpectText("vnTask", &_vnTask::put_Name, &_vnTask::get_Name);
  ExpectText("vnCondition", &_vnCondition::put_DisplayName, &_vnCondition::get_DisplayName);
  ExpectText("vnContainer", &_vnContainer::put_Label, &_vnContainer::get_Label);
  ExpectText("vnFile", &_vnFile::put_DisplayName, &_vnFile::get_DisplayName);
  ExpectText("vnJump", &_vnJump::put_DisplayName, &_vnJump::get_DisplayName);
  ExpectText("vnItem", &_vnItem::put_DisplayName, &_vnItem::get_DisplayName);
  ExpectText("vnDetails", &_vnDetails::put_Title, &_vnDetails::get_Title);
  ExpectText("vnTitle", &_vnTitle::put_DisplayName, &_vnTitle::get_DisplayName);
  ExpectText("vnTemplate", &_vnTemplate::put_DisplayName, &_vnTemplate::get_DisplayName);
  ExpectText("FieldDefs", &_FieldDefs::put_Text, &_FieldDefs::get_Text);
  ExpectText("FieldValues", &_FieldValues::put_Text, &_FieldValues::get_Text);
  ExpectText("FormDef", &_FormDef::put_Text, &_FormDef::get_Text);
  ExpectNumber<_vnChart, LONG>("vnChart", &_vnChart::put_BackColour, &_vnChart::get_BackColour);
  ExpectNumber<_vnFigure, FLOAT>("vnFigure", &_vnFigure::put_Left, &_vnFigure::get_Left);
  ExpectNumber<_vnLine, LONG>("vnLine", &_vnLine::put_ForeColour, &_vnLine::get_ForeColour);
}

TEST_F(EarlyBoundTest, ADocumentIsBuiltThroughTheSlots) {
  const auto document = Make<_vnDocument>("vnDocument");
  ComPtr<_vnStep> step, found;
  ComPtr<_vnSteps> steps;
  ComPtr<_vnFigure> figure;
  ComPtr<IFontDisp> font;
  ASSERT_EQ(document->NewStep(nullptr, nullptr, step.Receive()), S_OK);
  ASSERT_EQ(document->get_Steps(steps.Receive()), S_OK);
  OwnedBstr key;
  ASSERT_EQ(step->get_Key(key.Receive()), S_OK);
  VARIANT index;
  VariantInit(&index);
  index.vt = VT_BSTR;
  index.bstrVal = key.get();
  ASSERT_EQ(steps->get_Item(&index, found.Receive()), S_OK);
  EXPECT_EQ(found.get(), step.get());
  ASSERT_EQ(step->get_Figure(figure.Receive()), S_OK);
  EXPECT_EQ(figure->put_Shape(vnsOctogon), S_OK);
  EnumVantrelShapes shape{};
  EXPECT_EQ(figure->get_Shape(&shape), S_OK);
  EXPECT_EQ(shape, vnsOctogon);
  EXPECT_EQ(figure->get_Font(font.Receive()), S_OK);
  EXPECT_TRUE(font.As<IFont>());
}

TEST_F(EarlyBoundTest, ErrorsCarryTheirTexts) {
  const auto document = Make<_vnDocument>("vnDocument");
  EXPECT_EQ(document->put_IR(7), static_cast<HRESULT>(0x800A0000 + 2199));
  ComPtr<IErrorInfo> error;
  ASSERT_EQ(GetErrorInfo(0, error.Receive()), S_OK);
  OwnedBstr description, source;
  error->GetDescription(description.Receive());
  error->GetSource(source.Receive());
  EXPECT_EQ(description.text(), u"Can't assign to read-only property.");
  EXPECT_EQ(source.text(), u"vnDocument.IR");
}

TEST_F(EarlyBoundTest, EverythingElseIsReachedFromItsOwner) {
  const auto document = Make<_vnDocument>("vnDocument");
  ComPtr<_vnDetails> details;
  ComPtr<_vnRevisions> revisions;
  ComPtr<_vnRevision> revision;
  ASSERT_EQ(document->get_Details(details.Receive()), S_OK);
  ASSERT_EQ(details->NewRevision(OwnedBstr(u"first").get()), S_OK);
  ASSERT_EQ(document->get_RevisionHistory(revisions.Receive()), S_OK);
  VARIANT first;
  first.vt = VT_I4;
  first.lVal = 1;
  ASSERT_EQ(revisions->get_Item(&first, revision.Receive()), S_OK);
  OwnedBstr reason;
  EXPECT_EQ(revision->get_Reason(reason.Receive()), S_OK);
  EXPECT_EQ(reason.text(), u"first");
  ComPtr<_vnTitleRef> authoriser;
  ASSERT_EQ(details->get_AuthorisedBy(authoriser.Receive()), S_OK);
  ASSERT_EQ(authoriser->put_DisplayName(OwnedBstr(u"the boss").get()), S_OK);
  OwnedBstr boss;
  EXPECT_EQ(authoriser->get_DisplayName(boss.Receive()), S_OK);
  EXPECT_EQ(boss.text(), u"the boss");

  ComPtr<_Properties> properties;
  ComPtr<_Property> property;
  ASSERT_EQ(document->get_Properties(properties.Receive()), S_OK);
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = 12;
  ASSERT_EQ(properties->Add(OwnedBstr(u"k").get(), value), S_OK);
  value.lVal = 1;
  ASSERT_EQ(properties->get_Item(value, property.Receive()), S_OK);
  OwnedBstr key;
  EXPECT_EQ(property->get_Key(key.Receive()), S_OK);
  EXPECT_EQ(key.text(), u"k");

  const auto library = Make<_vnTemplateLibrary>("vnTemplateLibrary");
  ComPtr<_vnTemplates> templates;
  ComPtr<_vnTemplate> added;
  ASSERT_EQ(library->get_FigureTemplates(templates.Receive()), S_OK);
  ASSERT_EQ(templates->NewItem(OwnedBstr(u"t").get(), added.Receive()), S_OK);

  ComPtr<_vnTitles> titles;
  ComPtr<_vnDocument> owner;
  ASSERT_EQ(document->get_Titles(titles.Receive()), S_OK);
  EXPECT_EQ(titles->get_Document(owner.Receive()), S_OK);
  EXPECT_EQ(owner.get(), document.get());
}

}  // namespace
}  // namespace vndoc6::com
