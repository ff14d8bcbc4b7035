// The saved text of every class, entry by entry, with another value in each property: a key that
// two properties exchange, or that is read under another name than it is written, shows here.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <sstream>

#include "automation/inside.h"
#include "bag/bag_scanner.h"
#include "platform/file_system.h"
#include "tests/support/saved_text.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/item.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/step.h"
#include "vndoc6/process/task.h"
#include "vndoc6/templates/template_library.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using automation::CallKind;
using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using Names = std::vector<std::string>;

// One entry of a text and the property that it holds.
struct Entry {
  std::string text;
  std::string property;
  bool comes_back = true;
};
using Entries = std::vector<Entry>;

// Entries and properties in turn, as a save orders them; between them blanks.
//   ?   a Boolean, whose value differs from that of any other in one pass at least
//   Font.Bold, Tasks(1).Name   of an object below; a nested text holds that property alone
//   -   before a property: a load does not bring it back
//   .   no property
Entries Parsed(const std::string& table) {
  Entries entries;
  std::istringstream words(table);
  for (Entry entry; words >> entry.text >> entry.property;) {
    entry.comes_back = entry.property[0] != '-';
    entry.property.erase(0, entry.property.find_first_not_of("-."));
    entries.push_back(entry);
  }
  return entries;
}

std::string TextOf(const Entries& entries) {
  std::string text;
  for (const Entry& entry : entries) text += entry.text;
  return text;
}

// An entry that holds a text of more.
std::string Nested(std::string_view key, std::string_view text) {
  return automation::ToUtf8(bag::BagTextOf(
      [&](bag::BagWriter& writer) { writer.Add(key, TextView(automation::FromUtf8(text))); }));
}

struct Golden {
  const automation::ClassInfo& info;
  std::function<Ref<Object>(const std::string& text)> load;
  std::function<std::string(Object& object)> save;
  // Makes the second a copy of the first; null where the class has none.
  std::function<void(Object&, Object&)> copy;
  Entries entries;
  Names not_put;  // what has a put that no text holds, or that does nothing here
};

template <class T>
Golden GoldenOf(const char* table, Names not_put = {}) {
  const auto load = [](const std::string& text) -> Ref<Object> {
    const auto object = Make<T>();
    if constexpr (requires { Inside::Read(*object, testing::Kept(text), Text()); }) {
      Inside::Read(*object, testing::Kept(text), Text());
    } else {
      Inside::Read(*object, testing::Kept(text));
    }
    return object;
  };
  const auto save = [](Object& object) { return testing::SavedText(static_cast<T&>(object)); };
  std::function<void(Object&, Object&)> copy;
  if constexpr (requires(T & object) { Inside::CopyFrom(object, object); }) {
    copy = [](Object& from, Object& to) {
      Inside::CopyFrom(static_cast<T&>(to), static_cast<T&>(from));
    };
  }
  return {T::classInfo(), load, save, copy, Parsed(table), std::move(not_put)};
}

Ref<Object> LoadDocument(const std::string& text) {
  const testing::TemporaryFolder folder;
  folder.Write("golden.vn6", text);
  const auto document = Make<vnDocument>();
  EXPECT_TRUE(document->Load(folder.Name("golden.vn6"), u"read"));
  return document;
}

Ref<Object> LoadLibrary(const std::string& text) {
  const testing::TemporaryFolder folder;
  folder.Write("golden.vnl", text);
  const auto library = Make<vnTemplateLibrary>();
  EXPECT_TRUE(library->Load(folder.Name("golden.vnl")));
  return library;
}

std::string SaveLibrary(Object& library) {
  const testing::TemporaryFolder folder;
  static_cast<vnTemplateLibrary&>(library).SaveAs(folder.Name("golden.vnl"));
  return platform::ReadWholeFile(folder.Name("golden.vnl")).value();
}

// A dependency on a step that is not there would go when the step is saved.
constexpr const char* kStep = R"(
PB=~64"TR1^aDN^bboss^B^A": PerformedBy(1).DisplayNameCache  D=~64"description": Description
L=~64"label": Label  SI=101: StepIndex  K=~64"step": Key  CK=~64"container": ContainerKey
INS=~64"instructions": Instructions  AT=102: AssignType  ATo=103: AssignTo  TBL=104: Table
F=~64"form": Form  DDT=105: DueDateType  DUR=~64"duration": Duration  AC=?: AutoComplete
Fig=~64"UD=106:": Figure.UserData  FL=~64"F1^aFN^bfile^B^A": Files(1).FileName
J=~64"J1^aFN^bjump^B^A": Jumps(1).FileName  Fd=~64"fields": Fields.Text
C=~64"C1^aCT^btest^B^A": Conditions(1).ConditionTest  P=~64"x=107:": Properties(1).Value
T=~64"T1^aN^btask^B^A": Tasks(1).Name  Attach=~64"x=108:": Attachments(1).Value
CE=~64"expression": ConditionExpression  DP=~64"step=109:": Dependancies(1).Value
CS=110: ContinueStyle
)";

// The passwords are no properties.
constexpr const char* kDetails = R"(
K=~64"details": Key  AB=~64"R^aboss^A": AuthorisedBy.Ref  DA=t45001.5: DateApproved
DC=~64"code": DocumentCode  DS=101: DocumentStatus  P=~64"purpose": Purpose  R=s102.5: Revision
T=~64"title": Title  S=~64"scope": Scope  Desc=~64"description": Description  DDT=103: DueDateType
Dur=~64"duration": Duration  AT=104: AssignType  ATo=105: AssignTo  Tbl=106: Table
Frm=~64"form": Form  N=~64"notes": Notes  F=~64"fields": Fields.Text  RP=~64"read": .
WP=~64"write": .
)";

// The key is read from "Key", which no save writes.
constexpr const char* kFigure = R"(
K=~64"figure": -Key  A=101: Alignment  AS=102: AutoSize  BM=103: BackMode  DC=104: DrawColour
DS=105: DrawStyle  DW=106: DrawWidth  EM=107: EditMode  FlC=108: FillColour  F.B=?: Font.Bold
F.I=?: Font.Italic  F.N=~64"Courier": Font.Name  F.S=c10.5: Font.Size  F.St=?: Font.Strikethrough
F.U=?: Font.Underline  FC=109: ForeColour  H=s110.5: Height  Hid=?: Hidden  Lef=s111.5: Left
Log=?: Logical  M=?: Marked  MX=?: MoveableX  MY=?: MoveableY  Pic=pAQ==: Picture
PI=112: -PictureIndex  PP=113: PicturePosition  SX=?: ScrollableX  SY=?: ScrollableY
S=?: Selectable  Sh=114: Shadow  Sp=115: Shape  SO=116: ShapeOrientation  SzX=?: SizeableX
SzY=?: SizeableY  TMX=117: TextMarginX  TMY=118: TextMarginY  TT=~64"tip": Tooltip  Tp=s119.5: Top
Tr=?: Transparent  UD=120: UserData  W=s121.5: Width  ZOI=122: ZOrderIndex
)";

// ShadowOffsetX is read from "SOfftX", PageMarginsColour from "SPM".
constexpr const char* kChart = R"(
AD=?: AdjustDest  AO=?: AdjustOrig  A=101: Alignment  ArD=102: ArrowDest  ArDS=103: ArrowDestSize
ArM=104: ArrowMid  ArMS=105: ArrowMidSize  ArO=106: ArrowOrig  ArOS=107: ArrowOrigSize
AS=108: AutoSize  BC=109: BackColour  BM=110: BackMode  CPHEX=~64"hex": ChartPictureHEX
CH=111: ChartHeight  CW=112: ChartWidth  DC=113: DrawColour  DS=114: DrawStyle  DW=115: DrawWidth
EM=116: EditMode  E=?: Ellipsis  FlC=117: FillColour  F.B=?: Font.Bold  F.I=?: Font.Italic
F.N=~64"Courier": Font.Name  F.S=c10.5: Font.Size  F.St=?: Font.Strikethrough
F.U=?: Font.Underline  FC=118: ForeColour  GC=119: GridColour  GSX=120: GridSizeX
GSY=121: GridSizeY  H=?: Hidden  OT=?: OrientedText  OD=?: OrthogonalDynamic  Pic=pAg==: Picture
PicP=122: PicturePosition  SS=~64"sequence": SequenceSeperator  S=?: Shadow  SC=123: ShadowColour
SOffX=124: -ShadowOffsetX  SOffY=125: ShadowOffsetY  Sh=126: Shape  ShO=127: ShapeOrientation
SG=?: ShowGrid  SJ=128: ShowJump  STI=?: ShowStepIndex  STT=?: ShowToolTip  STG=?: SnapToGrid
TIS=~64"index": StepIndexSeparator  Tr=?: Transparent  PH=129: PageHeight  PW=130: PageWidth
SPM=?: ShowPageMargins  PMC=131: -PageMarginsColour  LS=132: LinkStyle
)";

constexpr const char* kLine = R"(
AD=101: ArrowDest  ADS=102: ArrowDestSize  AM=103: ArrowMid  AMS=104: ArrowMidSize
AO=105: ArrowOrig  AOS=106: ArrowOrigSize  BM=107: BackMode  DA=?: DestAdjustable
DFI=108: DestFigureIndex  DX=109: DestX  DY=110: DestY  DC=111: DrawColour  DS=112: DrawStyle
DW=113: DrawWidth  F.B=?: Font.Bold  F.I=?: Font.Italic  F.N=~64"Courier": Font.Name
F.S=c10.5: Font.Size  F.St=?: Font.Strikethrough  F.U=?: Font.Underline  FC=114: ForeColour
H=?: Hidden  LS=115: LinkStyle  L=?: Logical  M=?: Marked  OT=?: OrientedText
OA=?: OrigAdjustable  OFI=116: OrigFigureIndex  OX=117: OrigX  OY=118: OrigY
OD=?: OrthogonalDynamic  R=?: Rigid  S=?: Selectable  SJ=119: ShowJump  Stc=?: Stretchable
TS=120: TextSegment  UD=121: UserData  ZOI=122: ZOrderIndex  EPC=2: ExtraPointCount
EPX_1=123: ExtraPointX(1)  EPY_1=124: ExtraPointY(1)  EPX_2=125: ExtraPointX(2)
EPY_2=126: ExtraPointY(2)
)";

std::string DocumentTable() {
  return R"(GUID=~64"guid": GUID )" + Nested("D", TextOf(Parsed(kDetails))) + R"( Details.Key
FV=2: FileVersion  DV=s1.2: DocumentVersion  DT=1: DocumentType  IR=101: IR
C=~64"A=102:": Chart.Alignment )" +
         Nested("S", Nested("Tstep", TextOf(Parsed(kStep)))) +
         R"( Steps(1).PerformedBy(1).DisplayNameCache
LK=~64"L1^aTT^btip^B^A": Links(1).Tooltip
RH=~64"F1^aD=t45001.5:R=s1:IR=1:Rs^b^B^A": RevisionHistory(1).RevisionDate
P=~64"AllowGUIDAssign=T:": Properties(1).Value  FDD=~64"d": FieldDefsDetails.Text
FoD=~64"fd": FormDetails.Text  FDS=~64"s": FieldDefsSteps.Text  FoS=~64"fs": FormSteps.Text
FDL=~64"l": FieldDefsLinks.Text  FoL=~64"fl": FormLinks.Text
FL=~64"F1^aFN^bfile^B^A": Files(1).FileName  J=~64"J1^aFN^bjump^B^A": Jumps(1).FileName
CN=~64"C1^aL^blabel^B^A": Containers(1).Label  PC=103: PagesCount  SPB=~64"?": ShowPageBreaks
Attach=~64"x=104:": Attachments(1).Value  DBGUID=~64"database": DBGUID
ConStr=~64"connection": ConnectionString  CT=105: ChartType)";
}

// Each list with one template, of another number.
std::string LibraryTable() {
  std::string table;
  char number = '1';
  for (const std::string list : {"Report", "Figure", "Revision", "File", "Jump"}) {
    std::string text =
        Nested("L1", R"(ID=?:DisplayName=~64"":Description=~64"":Value=~64"":)") + "NextID=?:";
    std::replace(text.begin(), text.end(), '?', number++);
    table.append(Nested(list + "Templates", text)).append(" " + list + "Templates(1).ID ");
  }
  return table;
}

std::vector<Golden> MakeGoldens() {
  return {
      {vnDocument::classInfo(),
       LoadDocument,
       [](Object& object) { return testing::SavedText(static_cast<vnDocument&>(object)); },
       nullptr,
       Parsed(DocumentTable()),
       {"ChangeEventsLoading", "IR", "Edition", "DocType", "ChangeEvents"}},
      {vnTemplateLibrary::classInfo(),
       LoadLibrary,
       SaveLibrary,
       nullptr,
       Parsed(LibraryTable()),
       {"ChangeEventsLoading"}},
      GoldenOf<vnDetails>(kDetails),
      GoldenOf<vnStep>(kStep),
      GoldenOf<vnFigure>(kFigure),
      GoldenOf<vnChart>(kChart),
      GoldenOf<vnLine>(kLine, {"UpdateExtraPoints"}),
      GoldenOf<vnLink>(R"(
K=~64"link": Key  TT=~64"tip": Tooltip  T=~64"text": Text  OSK=~64"origin": OriginStepKey
DSK=~64"destination": DestinationStepKey  L=~64"UD=101:": Line.UserData
C=~64"C1^aDN^bname^B^A": Conditions(1).DisplayName  CE=~64"expression": ConditionExpression)"),
      GoldenOf<vnCondition>(R"(
K=~64"condition": Key  DN=~64"name": DisplayName  CT=~64"test": ConditionTest
FM=~64"message": FailMessage)"),
      GoldenOf<vnTask>(R"(
K=~64"task": Key  N=~64"name": Name  D=~64"description": Description  TT=101: TaskType
MT=102: ModuleType  TO=103: TaskOrder  TD=~64"data": TaskData)"),
      GoldenOf<vnContainer>(R"(
K=~64"container": Key  L=~64"label": Label  D=~64"description": Description
F=~64"UD=101:": Figure.UserData)"),
      GoldenOf<vnFile>(R"(
K=~64"file": Key  DN=~64"name": DisplayName  FN=~64"path": FileName  DID=101: DocID)"),
      GoldenOf<vnJump>(R"(
K=~64"jump": Key  DN=~64"name": DisplayName  FN=~64"path": FileName  JID=101: ProcessID)"),
      GoldenOf<vnItem>(R"(
ID=101: ID  DisplayName=~64"name": DisplayName  Description=~64"description": Description)"),
      GoldenOf<vnRevision>(R"(
D=t45001.5: RevisionDate  R=s101.5: Revision  IR=102: IR  Rs=~64"reason": Reason)"),
      // Without a title handler no reference can be put.
      GoldenOf<vnTitleRef>(R"(R=~64"boss": Ref  DN=~64"name": DisplayNameCache)",
                           {"Ref", "DisplayName"}),
      GoldenOf<vnTemplate>(R"(
ID=101: ID  DisplayName=~64"name": DisplayName  Description=~64"description": Description
Value=~64"value": Value  TagVariant=~64"tag": TagVariant)"),
  };
}

// Enough for the values of 31 Booleans to differ from each other.
constexpr uint32_t kPasses = 5;

// The entries with every `?` replaced.
Entries InPass(Entries entries, uint32_t pass) {
  uint32_t number = 0;
  for (Entry& entry : entries) {
    for (char& character : entry.text) {
      if (character == '?') character = (++number >> pass & 1) != 0 ? 'T' : 'F';
    }
  }
  return entries;
}

// The value of the text's first entry.
std::optional<Variant> FirstValue(const Text& text) {
  bag::BagScanner scanner{bag::KeptText(text)};
  bag::BagEntry entry;
  Variant value;
  if (!scanner.Next(entry) || !scanner.ValueOf(entry, value)) return std::nullopt;
  return value;
}

struct Value {
  Variant value;
  bool nested;  // it lies in a text of its own
};

Value ValueOf(const Entry& entry) {
  Variant value = FirstValue(automation::FromUtf8(entry.text)).value();
  // The one Boolean that is saved as a letter.
  if (entry.property == "ShowPageBreaks") return {value == Variant(u"T"), false};
  bool nested = false;
  while (const Text* text = value.If<Text>()) {
    std::optional<Variant> inner = FirstValue(*text);
    if (!inner) break;
    value = std::move(*inner);
    nested = true;
  }
  return {std::move(value), nested};
}

// The object that a path leads to, and the path's last name with its argument.
struct Place {
  Ref<Object> object;
  Text name;
  std::vector<Variant> arguments;

  const automation::MemberInfo* Find(CallKind kind) const {
    return object->GetClassInfo()->Find(object->FindMember(name), kind);
  }
  Variant Invoke(CallKind kind) const {
    return object->InvokeMember(object->FindMember(name), kind, {arguments, {}});
  }
};

Place PlaceOf(Object& object, const std::string& path) {
  Place place{&object, {}, {}};
  std::istringstream names(path);
  for (std::string name; std::getline(names, name, '.');) {
    if (!place.name.empty()) place.object = place.Invoke(CallKind::kGet).ToObject();
    const size_t bracket = name.find('(');
    place.name = automation::FromUtf8(name.substr(0, bracket));
    place.arguments.clear();
    if (bracket != name.npos) place.arguments.emplace_back(std::stoi(name.substr(bracket + 1)));
  }
  return place;
}

// Whether a host can put what the entry holds.
bool IsPut(const Golden& golden, const Entry& entry) {
  if (entry.property.empty() || ValueOf(entry).nested) return false;
  if (std::count(golden.not_put.begin(), golden.not_put.end(), entry.property) > 0) return false;
  const Ref<Object> object = golden.info.Create();
  return PlaceOf(*object, entry.property).Find(CallKind::kPut | CallKind::kPutRef) != nullptr;
}

void Put(Object& object, const Entry& entry) {
  const Variant value = ValueOf(entry).value;
  Place place = PlaceOf(object, entry.property);
  place.arguments.push_back(value);
  place.Invoke(value.IsObject() ? CallKind::kPutRef : CallKind::kPut);
}

// Comparable, also for pictures: their bytes.
std::string Shown(const Variant& value) {
  if (!value.IsObject()) {
    return std::string(value.TypeName()) + " " + automation::ToUtf8(value.ToText());
  }
  const auto bytes = static_cast<automation::Picture&>(*value.ToObject()).Bytes();
  return "Picture " + std::string(bytes.begin(), bytes.end());
}

void ForEachGolden(const std::function<void(const Golden&)>& test) {
  for (Golden& golden : MakeGoldens()) {
    const Entries entries = golden.entries;
    for (uint32_t pass = 0; pass < kPasses; ++pass) {
      SCOPED_TRACE(std::string(golden.info.name()) + ", pass " + std::to_string(pass));
      golden.entries = InPass(entries, pass);
      test(golden);
    }
  }
}

TEST(GoldenTexts, HoldWhatWasPut) {
  ForEachGolden([](const Golden& golden) {
    Entries loaded, put;
    for (const Entry& entry : golden.entries) {
      (IsPut(golden, entry) ? put : loaded).push_back(entry);
    }
    const Ref<Object> object = golden.load(TextOf(loaded));
    for (const Entry& entry : put) Put(*object, entry);
    EXPECT_EQ(golden.save(*object), TextOf(golden.entries));
  });
}

TEST(GoldenTexts, GiveBackEveryProperty) {
  ForEachGolden([](const Golden& golden) {
    const Ref<Object> object = golden.load(TextOf(golden.entries));
    for (const Entry& entry : golden.entries) {
      if (entry.property.empty()) continue;
      const std::string read = Shown(PlaceOf(*object, entry.property).Invoke(CallKind::kGet));
      EXPECT_EQ(read == Shown(ValueOf(entry).value), entry.comes_back)
          << entry.text << " " << entry.property << " reads " << read;
    }
  });
}

TEST(GoldenTexts, AreCopiedButForTheKey) {
  ForEachGolden([](const Golden& golden) {
    if (!golden.copy) return;
    const Ref<Object> object = golden.load(TextOf(golden.entries));
    const Ref<Object> copy = golden.load("");
    golden.copy(*object, *copy);
    for (const Entry& entry : golden.entries) {
      if (entry.property == "Key") continue;
      EXPECT_EQ(Shown(PlaceOf(*copy, entry.property).Invoke(CallKind::kGet)),
                Shown(PlaceOf(*object, entry.property).Invoke(CallKind::kGet)))
          << entry.property;
    }
  });
}

TEST(GoldenTexts, HaveEveryPropertyWithAValueOfItsOwn) {
  for (const Golden& golden : MakeGoldens()) {
    SCOPED_TRACE(golden.info.name());
    std::set<std::string> values, names;
    for (const Entry& entry : golden.entries) {
      names.insert(entry.property.substr(0, entry.property.find('(')));
      if (entry.text.find('?') != entry.text.npos) continue;
      EXPECT_TRUE(values.insert(Shown(ValueOf(entry).value)).second) << entry.text;
    }
    for (const automation::MemberInfo& member : golden.info.members()) {
      if (member.kind != CallKind::kPut || names.contains(member.name)) continue;
      EXPECT_EQ(std::count(golden.not_put.begin(), golden.not_put.end(), member.name), 1)
          << member.name << " is missing";
    }
  }
}

}  // namespace
}  // namespace vndoc6
