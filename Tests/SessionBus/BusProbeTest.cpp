#include "Platform/SessionBus/BusProbe.h"
#include "Platform/SessionBus/BusLink.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QLocalServer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using BusProbe::Answer;

namespace
{
constexpr auto Quick = 300ms;

class BusProbes : public testing::Test
{
protected:
    TemporaryHome home;
    PrivateBus bus{home.path(QString())};
};
} // namespace

TEST_F(BusProbes, TellTheBusesApart)
{
    const QString nobody = u"unix:path="_s + home.path(u"nobody"_s);
    const std::tuple<const char *, QString, Answer> rows[] = {
        {"a bus", bus.address(), Answer::Answers},
        {"with more to its address", bus.address() + u",guid=0123456789abcdef0123456789abcdef"_s,
         Answer::Answers},
        {"escaped", QString(bus.address()).replace(u"/"_s, u"%2f"_s), Answer::Answers},
        {"no socket", nobody, Answer::Missing},
        {"behind one that is missing", nobody + u';' + bus.address(), Answer::Answers},
        {"no address", QString(), Answer::Missing},
        {"no such abstract socket", u"unix:abstract=corvane-nobody"_s, Answer::Missing},
        {"another road", u"tcp:host=localhost,port=1"_s, Answer::Answers},
        {"a path that is too long", u"unix:path=/"_s + QString(200, u'x'), Answer::Answers},
    };
    for (const auto &[name, address, wanted] : rows)
        EXPECT_EQ(BusProbe::ask(address, 10s), wanted) << name;
}

TEST_F(BusProbes, AreNotHeldUpByOneThatHangs)
{
    bus.freeze();
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(BusProbe::ask(bus.address(), Quick), Answer::Silent);
    EXPECT_EQ(BusProbe::ask(bus.address() + u';' + bus.address(), Quick), Answer::Silent);
    BusProbe::Question question(Quick);
    EXPECT_EQ(question.get(), Answer::Silent);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
    bus.thaw();
    EXPECT_EQ(BusProbe::ask(bus.address(), 10s), Answer::Answers);
    BusProbe::Question again(10s);
    EXPECT_EQ(again.get(), Answer::Answers);
}

TEST_F(BusProbes, KnowOneThatTakesOnlyTheConnection)
{
    QLocalServer deaf; // nobody accepts; the kernel takes connections for it
    ASSERT_TRUE(deaf.listen(home.path(u"deaf"_s)));
    EXPECT_EQ(BusProbe::ask(u"unix:path="_s + home.path(u"deaf"_s), Quick), Answer::Silent);
}

TEST_F(BusProbes, KeepALinkFromWaitingOnItsThread)
{
    bus.stop();
    BusLink link(5ms);
    link.start();
    bus.start();
    bus.freeze();
    std::chrono::steady_clock::duration longest{};
    auto last = std::chrono::steady_clock::now();
    const auto end = last + 500ms;
    while (last < end) {
        QCoreApplication::processEvents();
        const auto now = std::chrono::steady_clock::now();
        longest = std::max(longest, now - last);
        last = now;
    }
    EXPECT_LT(longest, 400ms) << "the loop stood still while the bus hung";
    EXPECT_FALSE(link.connection());
    bus.thaw();
    EXPECT_TRUE(waitUntil([&] { return link.connection() != nullptr; }));
}
