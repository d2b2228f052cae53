#include "diagnosis/Diagnosis.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace lumaphone {

namespace {

using State = Finding::State;

QString sizeText(qint64 bytes)
{
    return QLocale(QLocale::Chinese, QLocale::Taiwan).formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
}

Finding good(const QString &text)
{
    return {State::good, text, {}};
}

/// The devices of one kind, the one in use first.
QList<Finding> devices(const QString &kind, QList<SoundDeviceFacts> devices)
{
    std::stable_partition(
        devices.begin(), devices.end(), [](const SoundDeviceFacts &device) { return device.isDefault; });
    QList<Finding> findings;
    for (const SoundDeviceFacts &device : devices) {
        findings.append(good(device.isDefault ? QStringLiteral("%1：%2（使用中）").arg(kind, device.name)
                                              : QStringLiteral("%1：%2").arg(kind, device.name)));
    }
    return findings;
}

FindingGroup sound(const SoundServerFacts &sound)
{
    FindingGroup group {QStringLiteral("聲音"), {}};
    if (!sound.problem.isEmpty()) {
        group.findings.append({State::problem, sound.problem,
            QStringLiteral("請確認聲音伺服器（PipeWire 的 pipewire-pulse 或 PulseAudio）正在執行。")});
        return group;
    }
    group.findings.append(good(QStringLiteral("聲音伺服器：%1").arg(sound.server)));
    group.findings += devices(QStringLiteral("輸出"), sound.outputs);
    if (sound.outputs.isEmpty()) {
        group.findings.append({State::problem, QStringLiteral("沒有輸出裝置，無法擷取電腦的聲音。"),
            QStringLiteral("請在系統的聲音設定啟用或連接一個輸出裝置。")});
    } else if (std::none_of(sound.outputs.begin(), sound.outputs.end(),
                   [](const SoundDeviceFacts &device) { return device.isDefault; })) {
        group.findings.append({State::advice, QStringLiteral("沒有預設的輸出裝置。"),
            QStringLiteral("請在系統的聲音設定選擇一個輸出裝置。")});
    }
    group.findings += devices(QStringLiteral("輸入"), sound.inputs);
    if (sound.inputs.isEmpty()) {
        group.findings.append({State::advice, QStringLiteral("沒有麥克風。"),
            QStringLiteral("要聆聽麥克風時，請先連接或啟用一個輸入裝置。")});
    }
    return group;
}

FindingGroup recognition(const QList<LanguageFacts> &languages)
{
    FindingGroup group {QStringLiteral("語音辨識"), {}};
    const bool hearsNothing = std::all_of(languages.begin(), languages.end(),
        [](const LanguageFacts &language) { return language.recogniser.isEmpty(); });
    for (const LanguageFacts &language : languages) {
        if (language.recogniser.isEmpty()) {
            group.findings.append({hearsNothing ? State::problem : State::advice,
                QStringLiteral("%1：尚未安裝").arg(language.name), language.recogniserHint});
        } else {
            group.findings.append(good(QStringLiteral("%1：%2").arg(language.name, language.recogniser)));
        }
    }
    return group;
}

FindingGroup translation(const QList<LanguageFacts> &languages)
{
    FindingGroup group {QStringLiteral("在這台電腦上翻譯成台灣繁體中文"), {}};
    for (const LanguageFacts &language : languages) {
        if (!language.needsTranslation) {
            group.findings.append(good(QStringLiteral("%1：轉換成台灣用字，不需要模型").arg(language.name)));
        } else if (language.isTranslated) {
            group.findings.append(good(QStringLiteral("%1：已安裝").arg(language.name)));
        } else {
            const QString size = language.translationSize > 0
                ? QStringLiteral("（約 %1）").arg(sizeText(language.translationSize))
                : QString();
            group.findings.append({State::advice, QStringLiteral("%1：尚未安裝").arg(language.name),
                QStringLiteral("請在視窗的「離線模型」安裝，或執行「lumaphone-cli models install %1」%2。")
                    .arg(language.translationModels, size)});
        }
    }
    return group;
}

Finding model(const ModelFacts &model)
{
    const QString name = model.size > 0
        ? QStringLiteral("%1（%2，%3）").arg(model.title, model.id, sizeText(model.size))
        : QStringLiteral("%1（%2）").arg(model.title, model.id);
    switch (model.state) {
    case ModelFacts::State::missing:
        return {State::neutral, QStringLiteral("%1：未安裝").arg(name), {}};
    case ModelFacts::State::partial:
        return {State::advice, QStringLiteral("%1：下載到一半").arg(name),
            QStringLiteral("執行「lumaphone-cli models install %1」會從中斷處繼續。").arg(model.id)};
    case ModelFacts::State::installed:
        return good(QStringLiteral("%1：已安裝").arg(name));
    case ModelFacts::State::bundled:
        return good(QStringLiteral("%1：內建").arg(name));
    case ModelFacts::State::damaged:
        return {State::problem, QStringLiteral("%1：已損壞").arg(name),
            QStringLiteral("請執行「lumaphone-cli models remove %1」，再重新安裝。").arg(model.id)};
    }
    Q_UNREACHABLE();
}

FindingGroup models(const QList<ModelFacts> &models)
{
    FindingGroup group {QStringLiteral("離線模型"), {}};
    std::transform(models.begin(), models.end(), std::back_inserter(group.findings), &model);
    return group;
}

Finding keyring(const KeyringFacts &keyring)
{
    switch (keyring.service) {
    case ServiceState::noBus:
    case ServiceState::missing:
        return {State::advice, QStringLiteral("鑰匙圈：找不到；API 金鑰無法儲存"),
            QStringLiteral("要使用自定義 API 時，請安裝 GNOME Keyring、KWallet 或 KeePassXC。")};
    case ServiceState::startable:
        return good(QStringLiteral("鑰匙圈：需要時會啟動"));
    case ServiceState::running:
        break;
    }
    if (!keyring.isLocked) {
        return good(QStringLiteral("鑰匙圈：執行中"));
    }
    return good(*keyring.isLocked ? QStringLiteral("鑰匙圈：已鎖定，讀取 API 金鑰時會要求解鎖")
                                  : QStringLiteral("鑰匙圈：可以使用"));
}

QString nameOf(DisplayFacts::Windows windows)
{
    switch (windows) {
    case DisplayFacts::Windows::none:
        return QStringLiteral("沒有圖形畫面");
    case DisplayFacts::Windows::x11:
        return QStringLiteral("X11");
    case DisplayFacts::Windows::wayland:
        return QStringLiteral("Wayland");
    }
    Q_UNREACHABLE();
}

QList<Finding> display(const DisplayFacts &display)
{
    using Windows = DisplayFacts::Windows;
    if (display.session == Windows::none) {
        return {{State::advice, QStringLiteral("畫面：%1").arg(nameOf(Windows::none)),
            QStringLiteral("視窗與浮動字幕要在圖形桌面上才能使用；終端機的字幕不受影響。")}};
    }
    const QString how = display.session == display.program
        ? nameOf(display.session)
        : QStringLiteral("%1，經由 XWayland").arg(nameOf(display.session));
    QList<Finding> findings {
        good(display.desktop.isEmpty() ? QStringLiteral("畫面：%1").arg(how)
                                       : QStringLiteral("畫面：%1（%2）").arg(how, display.desktop))};
    if (display.program == Windows::x11) {
        findings.append(good(QStringLiteral("浮動字幕：在所有視窗之上，位置可以自由擺放")));
    } else if (display.hasLayerShell) {
        findings.append(good(QStringLiteral("浮動字幕：在所有視窗之上，可以在所在的螢幕內拖曳")));
    } else {
        findings.append({State::advice, QStringLiteral("浮動字幕：是一般的視窗，可能被其他視窗蓋住"),
            QStringLiteral("安裝並啟用 XWayland 後，浮動字幕就能留在最上層。")});
    }
    return findings;
}

Finding portals(ServiceState portals)
{
    switch (portals) {
    case ServiceState::noBus:
        return {State::advice, QStringLiteral("工作階段匯流排（D-Bus）：無法連線"),
            QStringLiteral("請從桌面的工作階段啟動 Lumaphone。")};
    case ServiceState::missing:
        return {State::advice,
            QStringLiteral("桌面入口（xdg-desktop-portal）：找不到；外觀不會跟著桌面的深淺改變"),
            QStringLiteral("請安裝 xdg-desktop-portal 與桌面所用的實作。")};
    case ServiceState::startable:
    case ServiceState::running:
        return good(QStringLiteral("桌面入口（xdg-desktop-portal）：可以使用"));
    }
    Q_UNREACHABLE();
}

FindingGroup desktop(const MachineFacts &machine)
{
    FindingGroup group {QStringLiteral("桌面"), display(machine.display)};
    group.findings.append(keyring(machine.keyring));
    group.findings.append(portals(machine.portals));
    return group;
}

QString markOf(State state)
{
    switch (state) {
    case State::good:
        return QStringLiteral("✓");
    case State::neutral:
        return QStringLiteral("–");
    case State::advice:
        return QStringLiteral("·");
    case State::problem:
        return QStringLiteral("✗");
    }
    Q_UNREACHABLE();
}

} // namespace

bool Diagnosis::hasProblem() const
{
    return std::any_of(groups.begin(), groups.end(), [](const FindingGroup &group) {
        return std::any_of(group.findings.begin(), group.findings.end(),
            [](const Finding &finding) { return finding.state == State::problem; });
    });
}

Diagnosis diagnosisOf(const MachineFacts &machine)
{
    return {{
        {QStringLiteral("系統"), {good(machine.program), good(machine.system), good(machine.toolkit)}},
        sound(machine.sound),
        recognition(machine.languages),
        translation(machine.languages),
        models(machine.models),
        desktop(machine),
    }};
}

QString diagnosisText(const Diagnosis &diagnosis)
{
    QStringList lines;
    for (const FindingGroup &group : diagnosis.groups) {
        if (!lines.isEmpty()) {
            lines.append(QString());
        }
        lines.append(group.title);
        for (const Finding &finding : group.findings) {
            lines.append(QStringLiteral("  %1 %2").arg(markOf(finding.state), finding.text));
            if (!finding.step.isEmpty()) {
                lines.append(QStringLiteral("    → %1").arg(finding.step));
            }
        }
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace lumaphone
