#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace lumaphone {

struct ChatMessage
{
    QString role;
    QString content;

    bool operator==(const ChatMessage &) const = default;
};

struct ChatCompletionRequest
{
    QString model;
    QList<ChatMessage> messages;
    double temperature = 0;

    /// Compact JSON, keys in the order of the fields.
    QByteArray encoded() const;
};

struct ChatCompletionResponse
{
    struct Choice
    {
        ChatMessage message;

        bool operator==(const Choice &) const = default;
    };

    QList<Choice> choices;

    /// Every choice must hold a message with role and content; other keys are ignored.
    /// Throws json::DecodingError.
    static ChatCompletionResponse decoded(const QByteArray &json);

    bool operator==(const ChatCompletionResponse &) const = default;
};

} // namespace lumaphone
