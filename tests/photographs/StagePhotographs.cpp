#include "photographs/StagePhotographs.h"

#include "photographs/Studio.h"
#include "support/TestSound.h"

#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lumaphone::test {

namespace {

using namespace std::chrono_literals;
using Appear = std::function<void(Studio &)>;

Appear fail(const QString &message)
{
    return [message](Studio &studio) {
        studio.session.controller->handlePipelineEvent(pipeline_event::Failed {message});
    };
}

void await(const std::function<bool()> &condition, const char *what)
{
    if (!waitUntil(condition)) {
        throw std::runtime_error(what);
    }
}

void awaitSilence(Studio &studio)
{
    await([&] { return studio.live->isWithoutSound(); }, "Nobody misses the sound.");
}

/// Keeps the meter up until the end of a photograph.
class Loudness
{
public:
    Loudness(Studio &studio, double peak)
    {
        m_timer.setInterval(20);
        QObject::connect(&m_timer, &QTimer::timeout, [&studio, peak] {
            studio.session.controller->handlePipelineEvent(
                pipeline_event::AudioSample {{QStringLiteral("320 frames"), false, peak}});
        });
        m_timer.start();
    }

private:
    QTimer m_timer;
};

} // namespace

void photographStage(const QString &target)
{
    const QString longFailure = QStringLiteral("系統音訊擷取已停止：")
        + QStringLiteral("聲音伺服器沒有回應，請確認它還在執行，再重新開始。").repeated(4);
    const std::vector<std::pair<QString, Appear>> notices {
        {QStringLiteral("no-notice"),
            [](Studio &) {
            }},
        {QStringLiteral("no-sound"), &awaitSilence},
        {QStringLiteral("behind"),
            [](Studio &studio) {
                studio.session.controller->handlePipelineEvent(pipeline_event::Pace {true});
            }},
        {QStringLiteral("failure"), fail(QStringLiteral("系統音訊擷取已停止：連線中斷。"))},
        {QStringLiteral("long-failure"), fail(longFailure)},
    };
    for (const auto &[name, appear] : notices) {
        const QTemporaryDir folder;
        Studio studio(folder.path(), name == QLatin1String("no-sound") ? 1ms : std::chrono::milliseconds(1h));
        studio.open(QSize(1040, 680));
        studio.live->startOrStop();
        studio.settle();
        const std::vector<std::pair<QString, QString>> lines {
            {QStringLiteral("まず来月の予定から。"), QStringLiteral("先從下個月的行程開始。")},
            {QStringLiteral("予算は先週の会議で決まった通り、二百万円です。来週までに見積もりをもう一度確認し"
                            "てください。"),
                QStringLiteral("預算就照上週會議決定的，兩百萬日圓。請在下週前再確認一次報價。")},
            {QStringLiteral("デザインの初稿は金曜日までに出せると思いますが、色についてはまだ決まっていないと"
                            "ころがあるので、"
                            "来週の水曜日にもう一度みんなで話し合いたいと思います。"),
                QStringLiteral("設計初稿我想星期五以前交得出來，不過顏色還有沒決定的地方，所以想在下週三大家"
                               "再一起討論一次。")},
        };
        for (size_t count = 0; count < lines.size(); ++count) {
            studio.say(lines[count].first, lines[count].second, AppleSystemSpeechLanguage::japanese);
            appear(studio);
            studio.settle();
            studio.photograph(target, QStringLiteral("stage-smallest-%1-%2").arg(name).arg(count + 1));
        }
    }
}

void photographSound(const QString &target)
{
    {
        const QTemporaryDir folder;
        Studio studio(folder.path());
        studio.open();
        studio.live->startOrStop();
        studio.settle();
        studio.converse();
        const Loudness loudness(studio, 0.1);
        await([&] { return studio.live->soundLevel() > 0; }, "The level does not move.");
        studio.photograph(target, QStringLiteral("live-level"));
    }
    {
        const QTemporaryDir folder;
        Studio studio(folder.path());
        studio.session.screenAudio->output->name = QStringLiteral("內建音訊 類比立體聲");
        studio.open();
        studio.click(QStringLiteral("status.testSound"));
        studio.photograph(target, QStringLiteral("sound-test"));
        TestSound sound(analysisDescription, tone(440, 0.3, 16000, 0, 320));
        QTimer player;
        QObject::connect(&player, &QTimer::timeout,
            [&] { studio.session.screenAudio->recording().deliver(sound.buffer()); });
        player.start(20);
        await([&] { return studio.soundTest->hasHeard(); }, "The sound is not heard.");
        studio.photograph(target, QStringLiteral("sound-test-heard"));
    }
    {
        const QTemporaryDir folder;
        Studio studio(folder.path(), 1ms);
        studio.session.screenAudio->output->name = QStringLiteral("內建音訊 類比立體聲");
        studio.open();
        studio.click(QStringLiteral("status.testSound"));
        await([&] { return studio.soundTest->isWithoutSound(); }, "Nobody misses the sound.");
        studio.photograph(target, QStringLiteral("sound-test-silent"));
    }
    {
        const QTemporaryDir folder;
        Studio studio(folder.path());
        studio.session.screenAudio->output.reset();
        studio.open();
        studio.click(QStringLiteral("status.testSound"));
        studio.photograph(target, QStringLiteral("sound-test-failed"));
    }
}

} // namespace lumaphone::test
