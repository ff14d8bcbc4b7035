// A small class with something of everything that the door handles, for the door's tests.
#pragma once

#include <new>

#include "schema/event_list.h"
#include "schema/rows.h"
#include "vndoc6/automation/event_info.h"
#include "vndoc6/automation/services.h"

namespace vndoc6::com {

using automation::ClassInfo;
using automation::Currency;
using automation::Enumerator;
using automation::Object;
using automation::Ref;
using automation::Variant;

class Gadget;

class GadgetListener {
 public:
  virtual ~GadgetListener() = default;
  virtual void Changed(Gadget& /*eoGadget*/, int32_t /*elDetail*/) {}
  virtual void Counted(int16_t /*eiPercent*/, float /*enVersion*/) {}
  virtual void Done() {}
};

// The parts of a gadget.
class Gadgets final : public Object {
 public:
  static const ClassInfo& classInfo();
  const ClassInfo* GetClassInfo() const override { return &classInfo(); }

  Ref<Gadget> Item(const Variant& pvIndexKey);
  int32_t Count() const { return static_cast<int32_t>(parts_.size()); }
  Ref<Enumerator> NewEnum() const;
  void Add(Gadget* poGadget);
  void RemoveAll() { parts_.clear(); }

 private:
  std::vector<Ref<Gadget>> parts_;
};

class Gadget final : public Object, public automation::EventSource {
 public:
  static const ClassInfo& classInfo();
  const ClassInfo* GetClassInfo() const override { return &classInfo(); }

  int32_t Number() const { return number_; }
  void SetNumber(int32_t number) { number_ = number; }
  const Text& Label() const { return label_; }
  void SetLabel(const Text& label) { label_ = label; }
  bool Flag() const { return flag_; }
  void SetFlag(bool flag) { flag_ = flag; }
  float Ratio() const { return ratio_; }
  void SetRatio(float ratio) { ratio_ = ratio; }
  Currency Price() const { return price_; }
  void SetPrice(Currency price) { price_ = price; }
  const Variant& Any() const { return any_; }
  void SetAny(const Variant& any) { any_ = any; }
  Ref<Gadget> Partner() const { return partner_; }
  void SetPartner(Gadget* partner) { partner_ = Ref<Gadget>(partner); }
  Ref<automation::Font> GetFont() {
    if (!font_) font_ = automation::services().make_font();
    return font_;
  }
  void SetFont(automation::Font* font) { font_ = Ref<automation::Font>(font); }
  Ref<automation::Picture> GetPicture() const { return picture_; }
  void SetPicture(automation::Picture* picture) { picture_ = Ref<automation::Picture>(picture); }
  void PutSlot(const Variant&) { label_ = u"put"; }
  void PutRefSlot(const Variant&) { label_ = u"putref"; }
  Ref<Gadgets> Parts() const { return parts_; }

  Text Join(const Text& first, const Text& second, const Text& third) {
    return first + u"," + second + u"," + third;
  }
  void Fail(int32_t number) { throw automation::Error(number, u"It failed.", u"Gadget.Fail"); }
  void Exhaust() { throw std::bad_alloc(); }
  const Text& Locked() const { throw automation::Error(5, u"It is locked.", u"Gadget.Locked"); }
  void SetLocked(const Text&) { throw automation::Error(5, u"It is locked.", u"Gadget.Locked"); }
  void Raise(int32_t detail) {
    const Ref<Gadget> running(this);
    int16_t percent = 10;
    float version = 1.5f;
    listeners_.Raise<&GadgetListener::Changed>(*this, detail);
    listeners_.Raise<&GadgetListener::Counted>(percent, version);
    listeners_.Raise<&GadgetListener::Done>();
  }

  const automation::EventInterfaceInfo& Events() const override { return EventsInfo(); }
  void Connect(automation::EventSink* sink) override { listeners_.Connect(sink); }
  void Disconnect(automation::EventSink* sink) override { listeners_.Disconnect(sink); }
  bool HasListeners() const { return !listeners_.empty(); }

  static const automation::EventInterfaceInfo& EventsInfo() {
    using schema::by_value;
    using schema::event;
    static const automation::EventInterfaceInfo info{
        "__Gadget",
        "What gadgets tell.",
        {0x18d91578, 0x5e96, 0x4fcd, {0xb3, 0x43, 0x2f, 0x8c, 0x0f, 0x92, 0xe8, 0x08}},
        {event<&GadgetListener::Changed>(1, "Changed", "eoGadget", "elDetail"),
         event<&GadgetListener::Counted>(2, "Counted", "eiPercent", by_value{"enVersion"}),
         event<&GadgetListener::Done>(25, "Done")}};
    return info;
  }

 private:
  int32_t number_ = 0;
  Text label_;
  bool flag_ = false;
  float ratio_ = 0;
  Currency price_;
  Variant any_;
  Ref<Gadget> partner_;
  Ref<automation::Font> font_;
  Ref<automation::Picture> picture_;
  Ref<Gadgets> parts_ = automation::Make<Gadgets>();
  schema::EventList<GadgetListener, &EventsInfo> listeners_;
};

inline Ref<Gadget> Gadgets::Item(const Variant& pvIndexKey) {
  const int32_t position = pvIndexKey.ToLong();
  if (position < 1 || position > Count()) return {};
  return parts_[static_cast<size_t>(position - 1)];
}
inline Ref<Enumerator> Gadgets::NewEnum() const {
  return automation::Make<Enumerator>(std::vector<Ref<Object>>(parts_.begin(), parts_.end()));
}
inline void Gadgets::Add(Gadget* poGadget) { parts_.push_back(Ref<Gadget>(poGadget)); }

inline const ClassInfo& Gadgets::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<Gadgets>(
      "Gadgets", "Gadgets of a gadget.",
      {0x881ac8d2, 0x5867, 0x43dd, {0xa7, 0xef, 0x93, 0xfe, 0xd8, 0xca, 0x6c, 0x50}},
      {0xfb66ad78, 0x2e83, 0x4ac4, {0x81, 0x02, 0xc7, 0xc3, 0xcd, 0x08, 0x1e, 0xfe}},
      std::tuple{
          property<&Gadgets::Item>("Item", by_reference{"pvIndexKey"}),
          property<&Gadgets::Count>("Count").not_content("the members themselves are read"),
          property<&Gadgets::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&Gadgets::Add>("Add", "poGadget"),
      });
  return info;
}

inline const ClassInfo& Gadget::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<Gadget>(
      "Gadget", "Something of everything.",
      {0x208e6234, 0x8887, 0x40be, {0x94, 0xf0, 0xb1, 0x47, 0x63, 0x45, 0xf5, 0x09}},
      {0xf05140e4, 0x6165, 0x4bbb, {0x89, 0x73, 0x1d, 0x2a, 0xd9, 0x47, 0x20, 0x49}},
      std::tuple{
          property<&Gadget::Number, &Gadget::SetNumber>("Number", "plNumber"),
          property<&Gadget::Label, &Gadget::SetLabel>("Label", "psLabel"),
          property<&Gadget::Flag, &Gadget::SetFlag>("Flag", "pbFlag"),
          property<&Gadget::Ratio, &Gadget::SetRatio>("Ratio", "pnRatio"),
          property<&Gadget::Price, &Gadget::SetPrice>("Price", "pcPrice"),
          property<&Gadget::Any, &Gadget::SetAny>("Any", "pvAny"),
          property<&Gadget::Partner, &Gadget::SetPartner>("Partner", "poPartner"),
          property<&Gadget::GetFont, &Gadget::SetFont>("Font", "poFont"),
          property<&Gadget::GetPicture, &Gadget::SetPicture>("Picture", "poPicture"),
          put<&Gadget::PutSlot>("Slot", "pvSlot"),
          putref<&Gadget::PutRefSlot>("Slot", "pvSlot"),
          property<&Gadget::Parts>("Parts"),
          method<&Gadget::Join>("Join", "psFirst", optional("psSecond", u"b"),
                                optional("psThird", u"c")),
          method<&Gadget::Fail>("Fail", "plNumber"),
          method<&Gadget::Exhaust>("Exhaust"),
          method<&Gadget::Raise>("Raise", "plDetail"),
          property<&Gadget::Locked, &Gadget::SetLocked>("Locked", "psLocked"),
      });
  return info;
}

}  // namespace vndoc6::com
