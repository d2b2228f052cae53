#include "speech/pocketsphinx/PocketSphinxModel.h"

#include "base/AtomicFile.h"
#include "platform/SpeechFramework.h"

#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace lumaphone {

namespace {

/// Reads a binary model file from its beginning; every read is checked against the end.
class ModelFileReader
{
public:
    class Damaged
    {
    };

    explicit ModelFileReader(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    void setBigEndian(bool isBigEndian) { m_isBigEndian = isBigEndian; }
    qint64 position() const { return m_position; }

    const char *take(qint64 size)
    {
        if (size < 0 || size > m_bytes.size() - m_position) {
            throw Damaged();
        }
        const char *taken = m_bytes.constData() + m_position;
        m_position += size;
        return taken;
    }

    qint32 int32() { return number<qint32>(); }
    quint16 uint16() { return number<quint16>(); }
    qint16 int16() { return number<qint16>(); }

    /// A number of things that follow.
    qint32 count()
    {
        const qint32 value = int32();
        require(value >= 0);
        return value;
    }

    QByteArray zeroTerminated()
    {
        const qsizetype end = m_bytes.indexOf('\0', m_position);
        require(end >= 0);
        QByteArray text(m_bytes.constData() + m_position, end - m_position);
        m_position = end + 1;
        return text;
    }

    static void require(bool holds)
    {
        if (!holds) {
            throw Damaged();
        }
    }

private:
    template<typename Number> Number number()
    {
        const char *at = take(sizeof(Number));
        return m_isBigEndian ? qFromBigEndian<Number>(at) : qFromLittleEndian<Number>(at);
    }

    const QByteArray &m_bytes;
    qint64 m_position = 0;
    bool m_isBigEndian = false;
};

void validateText(const QByteArray &bytes)
{
    ModelFileReader::require(bytes.endsWith('\n'));
}

bool isIndex(qint32 value, qint32 count)
{
    return value >= 0 && value < count;
}

/// The tree that leads from a phone and its neighbours to a model of the phone.
void validatePhoneTree(ModelFileReader &reader, qint32 nodes, qint32 phones)
{
    for (qint32 i = 0; i < nodes; ++i) {
        reader.int16(); // phone of this level
        const qint32 children = reader.int16();
        const qint32 target = reader.int32();
        if (children == 0) {
            reader.require(target < phones); // negative: no such phone
        } else {
            reader.require(children > 0 && target >= 0 && target <= nodes - children);
        }
    }
}

void validatePhones(ModelFileReader &reader, qint32 phones, qint32 sequences, qint32 transitionMatrices)
{
    for (qint32 i = 0; i < phones; ++i) {
        const qint32 sequence = reader.int32();
        const qint32 transitionMatrix = reader.int32();
        reader.take(4); // attributes
        reader.require(isIndex(sequence, sequences) && isIndex(transitionMatrix, transitionMatrices));
    }
}

/// The definition of phones and their states, which the decoder indexes by without looking.
void validateModelDefinition(const QByteArray &bytes)
{
    const bool isBigEndian = bytes.startsWith("FMDB");
    if (!isBigEndian && !bytes.startsWith("BMDF")) {
        validateText(bytes); // the other form, whose reader is strict
        return;
    }
    ModelFileReader reader(bytes);
    reader.setBigEndian(isBigEndian);
    reader.take(4);
    reader.int32(); // version
    reader.take(reader.count()); // description of the format
    const qint32 basePhones = reader.count();
    const qint32 phones = reader.count();
    const qint32 statesPerPhone = reader.count();
    reader.count(); // states of base phones
    const qint32 states = reader.count();
    const qint32 transitionMatrices = reader.count();
    const qint32 sequences = reader.count();
    reader.count(); // phones of context
    const qint32 treeNodes = reader.count();
    reader.int32(); // silence
    reader.require(phones >= basePhones);
    const qint64 namesFrom = reader.position();
    for (qint32 i = 0; i < basePhones; ++i) {
        reader.zeroTerminated();
    }
    reader.take((4 - (reader.position() - namesFrom) % 4) % 4); // padding
    validatePhoneTree(reader, treeNodes, phones);
    validatePhones(reader, phones, sequences, transitionMatrices);
    const qint32 sequenceEntries = reader.count();
    reader.require(statesPerPhone == 0 || sequenceEntries == qint64(sequences) * statesPerPhone);
    for (qint32 i = 0; i < sequenceEntries; ++i) {
        reader.require(reader.uint16() < states);
    }
    if (statesPerPhone == 0) {
        reader.take(sequences); // lengths
    }
}

int numberAfter(const QByteArray &header, const char *key, int otherwise)
{
    return header.startsWith(key) ? header.mid(qsizetype(std::strlen(key))).trimmed().toInt() : otherwise;
}

/// The table of mixture weights, which the decoder maps into memory whatever its size.
void validateMixtureWeights(const QByteArray &bytes)
{
    ModelFileReader reader(bytes);
    reader.setBigEndian(bytes.startsWith('\0')); // begins with the length of a title, a small number
    int features = 0;
    int rows = 0;
    int columns = 0;
    int clusters = 0;
    int bits = 8;
    reader.take(reader.count()); // title
    while (const qint32 length = reader.count()) {
        const QByteArray header(reader.take(length), length - 1);
        features = numberAfter(header, "feature_count ", features);
        rows = numberAfter(header, "mixture_count ", rows);
        columns = numberAfter(header, "model_count ", columns);
        clusters = numberAfter(header, "cluster_count ", clusters);
        bits = numberAfter(header, "cluster_bits ", bits);
    }
    if (clusters == 0) {
        rows = reader.count();
        columns = reader.count();
    }
    const qint64 rowSize = bits == 4 ? (qint64(columns) + 1) / 2 : columns;
    reader.take(clusters == 15 ? 16 : clusters);
    reader.require(features > 0 && rows > 0 && columns > 0);
    reader.take(qint64(features) * rows * rowSize);
}

QByteArray bytesOf(const QString &path)
{
    try {
        return readFile(path).value_or(QByteArray());
    } catch (const FileError &error) {
        throw SpeechFrameworkError(error.errorDescription());
    }
}

template<typename Check> void validateFile(const QString &path, Check check)
{
    try {
        check(bytesOf(path));
    } catch (const ModelFileReader::Damaged &) {
        throw SpeechFrameworkError(QStringLiteral("語音辨識模型的檔案已損壞：%1").arg(path));
    }
}

} // namespace

PocketSphinxModel::PocketSphinxModel(QString folder)
    : m_folder(std::move(folder))
{
}

QString PocketSphinxModel::acousticModel() const
{
    return m_folder + QStringLiteral("/en-us");
}

QString PocketSphinxModel::languageModel() const
{
    return m_folder + QStringLiteral("/en-us.lm.bin");
}

QString PocketSphinxModel::dictionary() const
{
    return m_folder + QStringLiteral("/cmudict-en-us.dict");
}

QStringList PocketSphinxModel::files() const
{
    QStringList files {languageModel(), dictionary()};
    for (const char *name :
        {"feat.params", "mdef", "means", "noisedict", "sendump", "transition_matrices", "variances"}) {
        files.append(acousticModel() + QLatin1Char('/') + QLatin1String(name));
    }
    return files;
}

bool PocketSphinxModel::isInstalled() const
{
    const QStringList all = files();
    return std::all_of(all.begin(), all.end(), [](const QString &path) { return QFileInfo(path).isFile(); });
}

void PocketSphinxModel::validate() const
{
    for (const QString &path : files()) {
        if (!QFileInfo(path).isFile()) {
            throw SpeechFrameworkError(QStringLiteral("找不到語音辨識模型的檔案：%1").arg(path));
        }
    }
    validateFile(acousticModel() + QStringLiteral("/feat.params"), validateText);
    validateFile(acousticModel() + QStringLiteral("/noisedict"), validateText);
    validateFile(dictionary(), validateText);
    validateFile(acousticModel() + QStringLiteral("/mdef"), validateModelDefinition);
    validateFile(acousticModel() + QStringLiteral("/sendump"), validateMixtureWeights);
}

} // namespace lumaphone
