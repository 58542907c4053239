#include <gtest/gtest.h>

#include <stdexcept>

#include "KOVSimException.h"
#include "SingletonPeer.h"
#include "omi_Singleton.h"

namespace {

class Plain : public omi_Singleton<Plain> {
  public:
    Plain() : published(omi_SingletonBase<Plain>::Instance()) { ++live; }
    ~Plain() { --live; }
    Plain* published;
    static inline int live = 0;
};

class Private : public omi_Singleton<Private> {
    friend class omi_Singleton<Private>;
    Private() = default;
};

/// Publishes another class than itself.
class Stray : public omi_Singleton<Plain> {};

class Failing : public omi_Singleton<Failing> {
  public:
    Failing() { throw std::runtime_error("no"); }
};

}  // namespace

TEST(omi_Singleton, ComesIntoBeingOnTheFirstCallAndStays) {
    EXPECT_EQ(omi_SingletonBase<Plain>::Instance(), nullptr);
    Plain* const object = omi_Singleton<Plain>::Instance();
    EXPECT_EQ(omi_Singleton<Plain>::Instance(), object);
    EXPECT_EQ(omi_SingletonBase<Plain>::Instance(), object);
    EXPECT_EQ(Plain::live, 1);
    omi_SingletonBase<Plain>::Finalize();
    EXPECT_EQ(Plain::live, 0);
    EXPECT_EQ(omi_SingletonBase<Plain>::Instance(), nullptr);
    omi_SingletonBase<Plain>::Finalize();
    EXPECT_EQ(Plain::live, 0);
}

TEST(omi_Singleton, IsPublishedBeforeTheDerivedConstructorRuns) {
    Plain* const object = omi_Singleton<Plain>::Instance();
    EXPECT_EQ(object->published, object);
    omi_SingletonBase<Plain>::Finalize();
}

TEST(omi_Singleton, AFriendMayHaveAPrivateConstructor) {
    EXPECT_NE(omi_Singleton<Private>::Instance(), nullptr);
    omi_SingletonBase<Private>::Finalize();
}

TEST(omi_Singleton, AClassThatDoesNotPublishItselfAborts) {
    EXPECT_EXIT(omi_Singleton<Stray>::Instance(), testing::KilledBySignal(SIGABRT), "");
}

TEST(omi_Singleton, AConstructorThatThrowsLeavesNoObjectBehind) {
    EXPECT_THROW(omi_Singleton<Failing>::Instance(), std::runtime_error);
    EXPECT_EQ(omi_SingletonBase<Failing>::Instance(), nullptr);
}

TEST(omi_Singleton, TwoLibrariesShareOneObject) {
    EXPECT_EQ(peer::Address(), &omi_SingletonBase<Shared>::instance);
    Shared* const object = omi_Singleton<Shared>::Instance();
    EXPECT_EQ(peer::Instance(), object);
    omi_SingletonBase<Shared>::Finalize();
    EXPECT_EQ(*peer::Address(), nullptr);
}

TEST(KOVSimException, IsOneClassInTwoLibraries) {
    EXPECT_THROW(peer::Refuse(), KOVSimException);
    EXPECT_TRUE(peer::CatchesRefusalOf([] { KOVSimException::ThrowText("here"); }));
}
