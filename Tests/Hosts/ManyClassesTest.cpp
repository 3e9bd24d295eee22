// More delegate classes than the module has functions of their own for.

#include <array>
#include <utility>

#include "HostTest.h"
#include "ZibMessaging/Private/Installation.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace hosts {
namespace {

using zib::Class;
using zib::objc::SEL;

constexpr int classCount = static_cast<int>(zib::functionsOfARow) + 5;
constexpr const char* method = "scene:openURLContexts:";

// A class whose method tells its number, and calls its superclass's where there is one.
template <int Number>
struct Scene {
  static inline Class cls;

  static void open(id self, SEL selector, id scene, id contexts) {
    hostDid(("Scene " + std::to_string(Number)).c_str());
    const auto inherited = cls.superclass().instanceMethod(zib::Selector(selector));
    if (!inherited) return;
    zib::callImplementation<void>(inherited.implementation(), self, zib::Selector(selector), scene,
                                  contexts);
  }
  static Class make(Class superclass) {
    const std::string name = "ManyScene" + std::to_string(Number);
    cls = zib::ClassBuilder(name.c_str(), superclass).method(method, &open).registerClass();
    return cls;
  }
};

class ManyClassesTest : public HostTest {
 protected:
  enum class Of { nothing, eachOther };

  // Registers the classes, connects a scene of each, and configures.
  void install(Of superclasses) {
    [&]<int... Number>(std::integer_sequence<int, Number...>) {
      Class superclass = zib::classNamed<"NSObject">();
      (add(Scene<Number>::make(superclass), superclass, superclasses), ...);
    }
    (std::make_integer_sequence<int, classCount>());
    configure();
  }

  std::vector<Object> delegates_;

 private:
  void add(Class cls, Class& superclass, Of superclasses) {
    if (superclasses == Of::eachOther) superclass = cls;
    delegates_.push_back(Object::adopted(zib::send<id>(cls.object(), zib::selector<"new">())));
    sim::uikit::connectScene(true, delegates_.back());
  }
};

TEST_F(ManyClassesTest, EachReachesItsOwnMethod) {
  install(Of::nothing);
  for (int number = 0; number < classCount; ++number) {
    open(delegates_[static_cast<std::size_t>(number)], {"app://one"});
    EXPECT_EQ(happened(), (Lines{"handled", "Scene " + std::to_string(number)}));
  }
}

TEST_F(ManyClassesTest, CallsOfSuperReachAllTheWayUp) {
  install(Of::eachOther);
  open(delegates_.back(), {"app://one"});
  Lines expected{"handled"};
  for (int number = classCount - 1; number >= 0; --number) {
    expected.push_back("Scene " + std::to_string(number));
  }
  EXPECT_EQ(happened(), expected);
}

// Whose method it was cannot be told: a wrong one would run on an object that is not of its class.
TEST_F(ManyClassesTest, AMethodThatMovedToAnotherClassRunsNobodyElses) {
  install(Of::nothing);
  const Object other = make("Whole");
  exchangeMethods(Scene<classCount - 1>::cls.name(), "Whole", method);
  open(other, {"app://one"});
  EXPECT_EQ(happened(), Lines{"handled"});
}

}  // namespace
}  // namespace hosts
