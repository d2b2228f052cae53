#include "support/engine/SampleSentences.h"

namespace lumaphone::engine::test {
namespace {

/// Sentences of the form who + when + deed, every combination once.
struct Patterns
{
    std::vector<std::string> who;
    std::vector<std::string> when;
    std::vector<std::string> deeds;
    std::string between; ///< a space, or nothing
    std::string end;
};

void append(std::vector<std::string> &sentences, const Patterns &patterns)
{
    for (const std::string &deed : patterns.deeds) {
        for (const std::string &who : patterns.who) {
            for (const std::string &when : patterns.when)
                sentences.push_back(who + patterns.between + when + patterns.between + deed + patterns.end);
        }
    }
}

Patterns english()
{
    return {{"My sister", "The teacher from Kyoto", "Everyone at the station", "Our new neighbour",
                "The woman with two dogs", "A friend of mine"},
        {"often", "on Monday morning", "in 2024", "after the concert", "without a word",
            "at about half past seven"},
        {"bought bread and a bottle of milk", "waited for the last train home",
            "talked about the weather in the mountains", "asked how much the ticket would cost",
            "forgot the umbrella under the table", "walked along the river with the children",
            "wanted to learn a little Korean before the journey",
            "paid 3,500 yen for the room and the breakfast",
            "sent the photographs of the old harbour to the museum",
            "explained why the meeting begins at nine",
            "opened the window because the kitchen was full of smoke",
            "heard that the library closes early today", "carried the heavy boxes up to the third floor",
            "laughed at the story about the cat and the violin", "found a quiet café behind the post office",
            "said that the doctor will call back tomorrow"},
        " ", "."};
}

Patterns japanese()
{
    return {{"妹は", "京都の先生が", "駅の人たちは", "新しい隣人は", "友だちの一人が"},
        {"よく", "月曜日の朝に", "コンサートの後で", "黙って", "七時半ごろ"},
        {"パンと牛乳を買いました", "最後の電車を待っていました", "山の天気について話しました",
            "切符の値段を聞きました", "机の下に傘を忘れました", "子どもたちと川沿いを歩きました",
            "旅行の前に韓国語を少し習いたがっていました", "古い港の写真を博物館に送りました",
            "会議が九時に始まる理由を説明しました", "図書館が今日は早く閉まると聞きました",
            "重い箱を三階まで運びました", "郵便局の裏で静かな喫茶店を見つけました"},
        "", "。"};
}

Patterns korean()
{
    return {{"제 여동생은", "교토에서 온 선생님은", "역에 있는 사람들은", "새 이웃은", "친구 한 명이"},
        {"자주", "월요일 아침에", "음악회가 끝난 뒤에", "말없이", "일곱 시 반쯤"},
        {"빵과 우유를 샀습니다", "집으로 가는 마지막 기차를 기다렸습니다", "산의 날씨에 대해 이야기했습니다",
            "표가 얼마인지 물었습니다", "책상 아래에 우산을 두고 왔습니다", "아이들과 강가를 걸었습니다",
            "여행 전에 한국어를 조금 배우고 싶어 했습니다", "오래된 항구의 사진을 박물관에 보냈습니다",
            "회의가 왜 아홉 시에 시작하는지 설명했습니다", "도서관이 오늘 일찍 닫는다고 들었습니다",
            "무거운 상자를 삼 층까지 날랐습니다"},
        " ", "."};
}

Patterns chinese()
{
    return {{"我妹妹", "從京都來的老師", "車站裡的每個人", "新來的鄰居", "我的一位朋友"},
        {"常常", "在星期一早上", "在音樂會結束後", "一句話也沒說就", "大約七點半的時候"},
        {"買了麵包和一瓶牛奶", "等最後一班電車回家", "談起山上的天氣", "問票價要多少錢", "把雨傘忘在桌子下面",
            "和孩子們沿著河邊散步", "想在旅行前學一點韓語", "把老港口的照片寄給博物館",
            "說明會議為什麼九點開始", "聽說圖書館今天會提早關門", "把沉重的箱子搬上三樓",
            "在郵局後面找到一家安靜的咖啡館"},
        "", "。"};
}

} // namespace

std::vector<std::string> sampleSentences()
{
    std::vector<std::string> sentences;
    for (const Patterns &patterns : {english(), japanese(), korean(), chinese()})
        append(sentences, patterns);
    return sentences;
}

std::vector<std::string> englishSentences()
{
    std::vector<std::string> sentences;
    append(sentences, english());
    return sentences;
}

} // namespace lumaphone::engine::test
