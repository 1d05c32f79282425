// The look that all windows share: texts that can be read, lines that say what they say, a bar that rests when
// it may.

#include "Platform/Desktop/WindowLook.h"
#include "Platform/Bundle.h"
#include "Platform/Desktop/DisplayLine.h"
#include "Platform/Desktop/SmoothProgressBar.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/WaitUntil.h"

#include <QFile>
#include <QProxyStyle>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

using namespace std::chrono_literals;

namespace
{
/// Relative luminance and contrast: Web Content Accessibility Guidelines 2.1.
double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one) + 0.05, b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

class StillStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

struct Bar {
    ManualClock clock{QDateTime(QDate(2026, 3, 2), QTime(12, 0))};
    SmoothProgressBar bar;

    Bar()
    {
        bar.setClock(clock);
        bar.setValue(0);
        bar.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&bar));
    }
};
} // namespace

TEST(WindowLook, TextsCanBeReadInBothLooks)
{
    const struct {
        const char16_t *text, *ground;
        double least;
    } rows[] = {
        {u"text", u"ground", 4.5},          {u"text", u"footer", 4.5},
        {u"secondary", u"ground", 4.5},     {u"secondary", u"footer", 4.5},
        {u"text", u"button", 4.5},          {u"text", u"buttonHover", 4.5},
        {u"text", u"buttonPressed", 4.5},   {u"onAccent", u"accent", 4.5},
        {u"onAccent", u"accentHover", 4.5}, {u"onAccent", u"accentPressed", 4.5},
        {u"tipText", u"tip", 4.5},          {u"accent", u"ground", 3},
        {u"accent", u"footer", 3},          {u"paused", u"ground", 3},
        {u"knobLine", u"footer", 3},
    };
    for (const bool dark : {false, true}) {
        for (const auto &row : rows) {
            const QColor text = WindowLook::colour(row.text, dark),
                         ground = WindowLook::colour(row.ground, dark);
            ASSERT_TRUE(text.isValid() && ground.isValid());
            EXPECT_GE(contrast(text, ground), row.least)
                << QString::fromUtf16(row.text).toStdString() << " on "
                << QString::fromUtf16(row.ground).toStdString() << (dark ? ", dark" : ", light");
        }
    }
}

TEST(WindowLook, PlacesOfTheSheetAreFilledIn)
{
    EXPECT_EQ(WindowLook::filledIn(QStringLiteral("a{color:@accent} b{font-size:@titleSize} @nobody@line"),
                                   false, 10),
              QStringLiteral("a{color:#1f6fd0} b{font-size:11.5pt} @nobody#e2e5ea"));
    QFile file(Bundle::main().resource(QStringLiteral("windows.qss")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString sheet = WindowLook::filledIn(QString::fromUtf8(file.readAll()), true, 10);
    EXPECT_TRUE(sheet.contains(QLatin1String("QPushButton")));
    EXPECT_FALSE(sheet.contains(u'@')) << "every place has its colour or size";
}

TEST(WindowLook, AShownWindowFollowsTheDesktop)
{
    QWidget window;
    auto *inner = new QWidget(&window);
    inner->resize(40, 40);
    window.resize(80, 80);
    for (const bool dark : {false, true, false}) {
        WindowLook::apply(window, dark);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        const QImage shown = window.grab().toImage();
        for (const QPoint place : {QPoint(20, 20), QPoint(60, 60)})
            EXPECT_EQ(shown.pixelColor(place), QColor(dark ? 0xFF2A2D32 : 0xFFFFFFFF));
    }
}

TEST(DisplayLine, ReadsFromLeftToRightWhateverItHolds)
{
    const struct {
        const char *name;
        QString text, line;
    } rows[] = {
        {"plain", QStringLiteral("a/b  (1 KB)"), QStringLiteral("a/b  (1 KB)")},
        {"line breaks", QStringLiteral("a\nb\r\tc\u2028d"), QStringLiteral("a b  c d")},
        {"escape, bell and nul", QStringLiteral("\u001b[1m\u0007") + QChar(u'\0'),
         QStringLiteral("\uFFFD[1m\uFFFD\uFFFD")},
        {"override", QStringLiteral("a\u202Egpj.exe"), QStringLiteral("agpj.exe")},
        {"isolate and marks", QStringLiteral("\u2067a\u2069\u200F\u061Cb"), QStringLiteral("ab")},
        {"half an emoji", QStringLiteral("a") + QChar(0xD83D), QStringLiteral("a\uFFFD")},
        {"right-to-left parts", QStringLiteral("\u05D0/\u05D1 2  (1 KB)"),
         QStringLiteral("\u05D0\u200E/\u200E\u05D1 2\u200E  (1 KB)")},
    };
    for (const auto &row : rows)
        EXPECT_EQ(DisplayLine::singleLine(row.text), row.line) << row.name;
    EXPECT_EQ(DisplayLine::bounded(QStringLiteral("abcdefgh"), 8), QStringLiteral("abcdefgh"));
    EXPECT_EQ(DisplayLine::bounded(QStringLiteral("abcdefghi"), 8), QStringLiteral("abcd\u2026ghi"));
    EXPECT_EQ(DisplayLine::bounded(QStringLiteral("a\U0001F600b\U0001F600c\U0001F600"), 4),
              QStringLiteral("a\u2026"))
        << "no emoji is cut";
}

TEST(DisplayLine, AToolTipSaysJustItsText)
{
    EXPECT_EQ(DisplayLine::toolTip(QStringLiteral("<b>&/x")),
              QStringLiteral("<p style=\"white-space:pre\">&lt;b&gt;&amp;/\u200Bx</p>"));
    const QString tip = DisplayLine::toolTip(QString(5000, u'x'));
    EXPECT_EQ(tip.count(u'x'), 3999);
    EXPECT_GE(tip.count(QChar(0x200B)), 3999 / 30) << "a long name wraps";
}

TEST(SmoothProgressBar, GlidesToItsValueAndRests)
{
    Bar on;
    on.bar.setValue(80);
    EXPECT_DOUBLE_EQ(on.bar.shownFraction(), 0);
    on.clock.advance(100ms);
    EXPECT_GT(on.bar.shownFraction(), 0.1);
    EXPECT_LT(on.bar.shownFraction(), 0.8);
    on.clock.advance(200ms);
    EXPECT_DOUBLE_EQ(on.bar.shownFraction(), 0.8);
    EXPECT_EQ(on.clock.runningTimers(), 0);
    on.bar.setValue(0);
    EXPECT_DOUBLE_EQ(on.bar.shownFraction(), 0) << "set back at once";
    on.bar.setValue(50);
    on.clock.advance(50ms);
    on.bar.hide();
    EXPECT_EQ(on.clock.runningTimers(), 0);
    on.bar.setValue(60);
    EXPECT_DOUBLE_EQ(on.bar.shownFraction(), 0.6);
}

TEST(SmoothProgressBar, SweepsOnlyWhileItIsSeen)
{
    Bar on;
    on.bar.setRange(0, 0);
    EXPECT_FALSE(on.bar.isMoving());
    on.bar.setSweeping(true);
    on.clock.advance(10s);
    EXPECT_TRUE(on.bar.isMoving());
    const QImage one = on.bar.grab().toImage();
    on.clock.advance(400ms);
    EXPECT_NE(on.bar.grab().toImage(), one);
    on.bar.hide();
    EXPECT_EQ(on.clock.runningTimers(), 0);
    on.bar.show();
    EXPECT_TRUE(waitUntil([&] { return on.bar.isMoving(); }));
    on.bar.setSweeping(false);
    EXPECT_EQ(on.clock.runningTimers(), 0);
}

TEST(SmoothProgressBar, StandsStillWhereTheDesktopWantsNoAnimations)
{
    StillStyle still;
    Bar on;
    on.bar.setStyle(&still);
    on.bar.setValue(80);
    EXPECT_DOUBLE_EQ(on.bar.shownFraction(), 0.8);
    on.bar.setRange(0, 0);
    on.bar.setSweeping(true);
    EXPECT_EQ(on.clock.runningTimers(), 0);
}
