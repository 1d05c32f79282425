// The look that all windows share: texts that can be read, lines that say what they say, a bar that rests when
// it may.

#include "Platform/Desktop/WindowLook.h"
#include "Platform/Bundle.h"
#include "Platform/Desktop/SmoothProgressBar.h"
#include "Platform/DisplayLine.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/WaitUntil.h"

#include <QFile>
#include <QProxyStyle>
#include <QTest>
#include <QTextDocument>

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;
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
        double least;
        QString grounds, texts;
    } rows[] = {
        {4.5, u"ground footer"_s, u"text secondary"_s},
        {4.5, u"button buttonHover buttonPressed"_s, u"text"_s},
        {4.5, u"accent accentHover accentPressed"_s, u"onAccent"_s},
        {4.5, u"tip"_s, u"tipText"_s},
        {3, u"ground footer"_s, u"accent"_s},
        {3, u"ground"_s, u"paused"_s},
        {3, u"footer"_s, u"knobLine"_s},
    };
    for (const auto &row : rows) {
        for (const QString &text : row.texts.split(u' ')) {
            for (const QString &ground : row.grounds.split(u' ')) {
                for (const bool dark : {false, true})
                    EXPECT_GE(contrast(WindowLook::colour(text, dark), WindowLook::colour(ground, dark)),
                              row.least)
                        << text.toStdString() << " on " << ground.toStdString()
                        << (dark ? ", dark" : ", light");
            }
        }
    }
}

TEST(WindowLook, PlacesOfTheSheetAreFilledIn)
{
    EXPECT_EQ(WindowLook::filledIn(u"a{color:@accent} b{font-size:@titleSize} @nobody@line"_s, false, 10),
              u"a{color:#1f6fd0} b{font-size:11.5pt} @nobody#e2e5ea"_s);
    const QString image = Bundle::main().resource(u"images/arrow_up_alt.svg"_s);
    EXPECT_EQ(WindowLook::filledIn(u"a{image:@image(arrow_up)}"_s, true, 10),
              u"a{image:url(\"%1\")}"_s.arg(image));
    QFile file(Bundle::main().resource(u"windows.qss"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString sheet = WindowLook::filledIn(QString::fromUtf8(file.readAll()), true, 10);
    EXPECT_TRUE(sheet.contains(u"QPushButton"_s));
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
    const std::tuple<const char *, QString, QString> rows[] = {
        {"plain", u"a/b  (1 KB)"_s, u"a/b  (1 KB)"_s},
        {"line breaks", u"a\nb\r\tc\u2028d"_s, u"a b  c d"_s},
        {"escape, bell and nul", u"\u001b[1m\u0007"_s + QChar(u'\0'), u"\uFFFD[1m\uFFFD\uFFFD"_s},
        {"override", u"a\u202Egpj.exe"_s, u"agpj.exe"_s},
        {"isolate and marks", u"\u2067a\u2069\u200F\u061Cb"_s, u"ab"_s},
        {"half an emoji", u"a"_s + QChar(0xD83D), u"a\uFFFD"_s},
        {"right-to-left parts", u"\u05D0/\u05D1 2  (1 KB)"_s, u"\u05D0\u200E/\u200E\u05D1 2\u200E  (1 KB)"_s},
    };
    for (const auto &[name, text, line] : rows)
        EXPECT_EQ(DisplayLine::singleLine(text), line) << name;
    EXPECT_EQ(DisplayLine::bounded(u"abcdefgh"_s, 8), u"abcdefgh"_s);
    EXPECT_EQ(DisplayLine::bounded(u"abcdefghi"_s, 8), u"abcd\u2026ghi"_s);
    EXPECT_EQ(DisplayLine::bounded(u"a\U0001F600b\U0001F600c\U0001F600"_s, 4), u"a\u2026"_s)
        << "no emoji is cut";
}

TEST(DisplayLine, APlainTipKeepsItsLinesAndIsNoMarkup)
{
    const std::pair<QString, QString> rows[] = {
        {u"Corvane 1\n\nnext\n"_s, u"Corvane 1\n\nnext\n"_s},
        {u"a\tb\n\u202Ec\u0007"_s, u"a b\nc\uFFFD"_s},
        {u"<b>x</b>"_s, u"<\u200Bb>x<\u200B/b>"_s},
        {u"Corvane\n<!-- <img src=x> &lt;&#60;"_s,
         u"Corvane\n<\u200B!-- <\u200Bimg src=x> &\u200Blt;&\u200B#60;"_s},
        {u"a <\u00A0b\n> c"_s, u"a <\u200B\u00A0b\n> c"_s},
        {u"a < b & c"_s, u"a < b & c"_s},
        {QString(), QString()},
    };
    for (const auto &[text, tip] : rows) {
        EXPECT_EQ(DisplayLine::plainTip(text), tip);
        EXPECT_FALSE(Qt::mightBeRichText(DisplayLine::plainTip(text))) << text.toStdString();
    }
    const QString manyLines = DisplayLine::plainTip(QString(100'000, u'\n'));
    EXPECT_EQ(manyLines.count(u'\n'), 20);
    EXPECT_TRUE(manyLines.endsWith(u"\n\u2026"_s));
    EXPECT_EQ(DisplayLine::plainTip(QString(16'000'000, u'x')).size(), 1000);
}

TEST(DisplayLine, AToolTipSaysJustItsText)
{
    EXPECT_EQ(DisplayLine::toolTip(u"<b>&/x"_s), u"<p style=\"white-space:pre\">&lt;b&gt;&amp;/\u200Bx</p>"_s);
    const QString tip = DisplayLine::toolTip(QString(5000, u'x'));
    EXPECT_EQ(tip.count(u'x'), 3999);
    EXPECT_GE(tip.count(QChar(0x200B)), 3999 / 30) << "a long name wraps";
}

TEST(SmoothProgressBar, GlidesToItsValueAndRests)
{
    Bar on;
    on.bar.setValue(80);
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

    StillStyle still; // of a desktop that wants no animations
    Bar calm;
    calm.bar.setStyle(&still);
    calm.bar.setValue(80);
    EXPECT_DOUBLE_EQ(calm.bar.shownFraction(), 0.8);
    calm.bar.setRange(0, 0);
    calm.bar.setSweeping(true);
    EXPECT_EQ(calm.clock.runningTimers(), 0);
}

TEST(SmoothProgressBar, SweepsOnlyWhileItIsSeen)
{
    Bar on;
    on.bar.setRange(0, 0);
    EXPECT_FALSE(on.bar.isMoving());
    on.bar.setSweeping(true);
    EXPECT_TRUE(on.bar.isMoving());
    on.bar.hide();
    EXPECT_EQ(on.clock.runningTimers(), 0);
    on.bar.show();
    EXPECT_TRUE(waitUntil([&] { return on.bar.isMoving(); }));
    const QImage one = on.bar.grab().toImage();
    on.clock.advance(400ms);
    EXPECT_NE(on.bar.grab().toImage(), one);
    on.bar.setSweeping(false);
    EXPECT_EQ(on.clock.runningTimers(), 0);
}
