// What the window needs for its texts, in the language that CORVANE_TEST_LANGUAGE names: the sentences are made
// once a process, so each language has a run of its own.

#include "Platform/Desktop/ElidedLabel.h"
#include "Tests/Progress/ProgressViewFixture.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"
#include "Utility/Language/LanguageManager.h"

#include <QApplication>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{
/// The language is chosen in a home of its own, before the first sentence is made.
class Language : public testing::Environment
{
public:
    void SetUp() override
    {
        m_home.emplace();
        LanguageManager::shared().setCurrentLanguage(qEnvironmentVariable("CORVANE_TEST_LANGUAGE", u"en"_s));
    }
    void TearDown() override { m_home.reset(); }

private:
    std::optional<TemporaryHome> m_home;
};
[[maybe_unused]] const auto *const chosen = testing::AddGlobalTestEnvironment(new Language);

using ProgressLayout = ProgressViewFixture;

/// Where each visible control stands; what is hidden has its place, too, but nobody sees it.
QHash<QString, QRect> places(const ScheduleProgressView &view)
{
    QHash<QString, QRect> found;
    for (const QWidget *widget : view.findChildren<QWidget *>()) {
        if (widget->isVisible())
            found.insert(widget->objectName(), QRect(widget->mapTo(&view, QPoint()), widget->size()));
    }
    return found;
}
} // namespace

TEST_F(ProgressLayout, NothingIsClippedAndNothingMoves)
{
    show();
    const QFont usual = QApplication::font();
    for (const double points : {8.0, 10.0, 15.0}) {
        QFont font = usual;
        font.setPointSizeF(points);
        QApplication::setFont(font);
        const int width = view.width();
        ASSERT_TRUE(waitUntil([&] { return view.width() != width; }));
        QSize size;
        QHash<QString, QRect> known;
        for (const auto &[name, display] : states()) {
            SCOPED_TRACE(testing::Message() << name << ", " << points << " points");
            view.apply(display);
            QApplication::processEvents();
            if (size.isEmpty())
                size = view.size();
            EXPECT_EQ(view.size(), size);
            for (const ElidedLabel *label : view.findChildren<ElidedLabel *>()) {
                if (label->isVisible() && label->objectName() != "scFilePath"_L1) {
                    EXPECT_EQ(label->shownText(), label->text());
                    EXPECT_LE(label->sizeHint().height(), label->height()) << label->objectName().toStdString();
                }
            }
            for (const QPushButton *button : view.findChildren<QPushButton *>())
                EXPECT_LE(button->sizeHint().width(), button->width()) << button->text().toStdString();
            const QHash<QString, QRect> now = places(view);
            for (auto place = now.begin(); place != now.end(); ++place) {
                EXPECT_EQ(known.value(place.key(), *place), *place) << place.key().toStdString();
                known.insert(place.key(), *place);
            }
        }
    }
    QApplication::setFont(usual);
}

TEST_F(ProgressLayout, EveryControlHasANameAndPlainLabelsHaveNone)
{
    for (const auto &[state, display] : states()) {
        view.apply(display);
        for (const char *name : {"scPauseButton", "scStopButton", "bandwidthSlider", "progressBarView",
                                 "dummyProgressBar", "bandwidthHelpIcon", "autoPauseIcon"})
            EXPECT_FALSE(outlet(name)->accessibleName().isEmpty()) << name << ", " << state;
        for (const QLabel *label : view.findChildren<QLabel *>())
            EXPECT_EQ(label->accessibleName(), QString()) << label->objectName().toStdString();
    }
}
