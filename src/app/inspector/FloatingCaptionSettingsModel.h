#pragma once

#include "app/floating/FloatingCaptionReader.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

class LumaphoneSettings;

/// The choices of somebody who reads on the caption panel, as raw values that QML can carry, with the lists
/// to choose from: each element has `value` and `title`. Main thread.
class FloatingCaptionSettingsModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The inspector's model has one.")
    Q_PROPERTY(lumaphone::FloatingCaptionReader *previewReader READ previewReader CONSTANT)
    Q_PROPERTY(QVariantList lineCounts READ lineCounts CONSTANT)
    Q_PROPERTY(QVariantList orders READ orders CONSTANT)
    Q_PROPERTY(QVariantList fonts READ fonts NOTIFY fontChanged)
    Q_PROPERTY(QVariantList silences READ silences NOTIFY silenceChanged)
    Q_PROPERTY(QString lineCount READ lineCount WRITE setLineCount NOTIFY lineCountChanged)
    Q_PROPERTY(QString order READ order WRITE setOrder NOTIFY orderChanged)
    Q_PROPERTY(QString font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(QString silence READ silence WRITE setSilence NOTIFY silenceChanged)
    Q_PROPERTY(double lineSpacing READ lineSpacing WRITE setLineSpacing NOTIFY lineSpacingChanged)
    Q_PROPERTY(double lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineWidthChanged)
    Q_PROPERTY(QString lineSpacingText READ lineSpacingText NOTIFY lineSpacingChanged)
    Q_PROPERTY(QString lineWidthText READ lineWidthText NOTIFY lineWidthChanged)

public:
    /// The settings must outlive the model.
    explicit FloatingCaptionSettingsModel(LumaphoneSettings &settings, QObject *parent = nullptr);

    /// Some lines, for whoever wants to see what the choices do.
    FloatingCaptionReader *previewReader() { return &m_previewReader; }

    QVariantList lineCounts() const;
    QVariantList orders() const;
    /// Those that are installed, and the chosen one.
    QVariantList fonts() const;
    QVariantList silences() const;

    QString lineCount() const;
    void setLineCount(const QString &value);
    QString order() const;
    void setOrder(const QString &value);
    QString font() const;
    void setFont(const QString &family);
    QString silence() const;
    void setSilence(const QString &value);
    double lineSpacing() const;
    void setLineSpacing(double spacing);
    double lineWidth() const;
    void setLineWidth(double share);
    QString lineSpacingText() const;
    QString lineWidthText() const;

signals:
    void lineCountChanged();
    void orderChanged();
    void fontChanged();
    void silenceChanged();
    void lineSpacingChanged();
    void lineWidthChanged();

private:
    LumaphoneSettings &m_settings;
    FloatingCaptionReader m_previewReader;
};

} // namespace lumaphone
