// The images as the panel gets them: drawn, crisp, right for the panel's shade and told apart at their real
// size.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{
const char *const states[] = {"menu_app",     "menu_pause",   "menu_upgrade", "sync_menubw1",
                              "sync_menubw2", "sync_menubw3", "sync_menubw4", "sync_menubw5"};
const char *const coloured = "menu_pause_color";
const QSize itemSize(20, 16);

/// The image on a transparent ground; a null image where it can't be read.
QImage drawn(const QString &name, QSize size)
{
    QSvgRenderer renderer(QStringLiteral(CORVANE_RESOURCES "/images/%1.svg").arg(name));
    if (!renderer.isValid())
        return {};
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    return image;
}

/// How many whole pixels of full strength are ink in one image and panel in the other.
double silhouetteDifference(const QImage &one, const QImage &other)
{
    double sum = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            sum += std::abs(qAlpha(one.pixel(x, y)) - qAlpha(other.pixel(x, y)));
    return sum / 255;
}

/// Which part of the image is ink.
double inkedShare(const QImage &image)
{
    QImage empty(image.size(), QImage::Format_ARGB32);
    empty.fill(Qt::transparent);
    return silhouetteDifference(image, empty) / (image.width() * image.height());
}
} // namespace

TEST(TrayImages, FillTheirPlaceAtEveryScale)
{
    for (const QString &suffix : {u""_s, u"_alt"_s}) {
        for (const char *state : states) {
            for (int scale = 1; scale <= 3; ++scale) {
                const double share = inkedShare(drawn(QString::fromUtf8(state) + suffix, itemSize * scale));
                EXPECT_TRUE(share > 0.25 && share < 0.70)
                    << share << ' ' << state << qPrintable(suffix) << scale;
            }
        }
    }
    EXPECT_GT(inkedShare(drawn(u"corvane"_s, QSize(64, 64))), 0.73);
}

TEST(TrayImages, StatesDifferInSilhouetteAtTheirRealSize)
{
    // Out of 320 pixels. Neighbouring sync frames are one step of a turn apart, so less than two states are.
    constexpr double betweenStates = 40;
    constexpr double betweenFrames = 30;
    for (size_t one = 0; one < std::size(states); ++one) {
        for (size_t other = one + 1; other < std::size(states); ++other) {
            const double difference = silhouetteDifference(drawn(QString::fromUtf8(states[one]), itemSize),
                                                           drawn(QString::fromUtf8(states[other]), itemSize));
            EXPECT_GT(difference, one >= 3 ? betweenFrames : betweenStates)
                << states[one] << ' ' << states[other];
        }
    }
}

TEST(TrayImages, AreDarkOnALightPanelAndLightOnADarkOne)
{
    for (const char *state : states) {
        const QString name = QString::fromUtf8(state);
        const QImage dark = drawn(name, itemSize);
        const QImage light = drawn(name + u"_alt"_s, itemSize);
        EXPECT_LT(silhouetteDifference(dark, light), 0.01);
        for (int y = 0; y < dark.height(); ++y) {
            for (int x = 0; x < dark.width(); ++x) {
                if (qAlpha(dark.pixel(x, y)) < 255)
                    continue;
                EXPECT_LT(qGray(dark.pixel(x, y)), 64) << state;
                EXPECT_GT(qGray(light.pixel(x, y)), 224) << state;
            }
        }
    }
}

TEST(TrayImages, ColouredPauseIsTheSameImageWithAmberBars)
{
    const QImage plain = drawn(u"menu_pause"_s, itemSize);
    const QImage amber = drawn(QString::fromUtf8(coloured), itemSize);
    EXPECT_LT(silhouetteDifference(plain, amber), 0.01);
    EXPECT_EQ(QColor(amber.pixel(13, 12)).name(), u"#d9822b"_s);
    EXPECT_EQ(amber.pixel(8, 12), plain.pixel(8, 12));
}
