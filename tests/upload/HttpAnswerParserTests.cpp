#include "upload/HttpAnswerParser.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace snapvane {

namespace {

using State = HttpAnswerParser::State;

constexpr qsizetype limit = 100;

/// An answer, and what is made of it: by its bytes alone, and when the connection then ends.
struct Row {
    const char* name;
    QByteArray answer;
    State state;
    int status;
    QByteArray body;
    State stateAtEnd;
};

const QByteArray ok = "HTTP/1.1 200 OK\r\n";

const Row rows[] = {
    {"Nothing", "", State::InHead, 0, "", State::InHead},
    {"PartOfTheStatusLine", "HTT", State::InHead, 0, "", State::InHead},
    {"StatusLineAlone", ok, State::InHead, 0, "", State::InHead},
    {"HeadersWithoutTheirEnd", ok + "A: b\r\n", State::InHead, 0, "", State::InHead},
    {"Length", ok + "Content-Length: 2\r\n\r\nok", State::Complete, 200, "ok", State::Complete},
    {"LengthOfNothing", ok + "Content-Length: 0\r\n\r\n", State::Complete, 200, "",
     State::Complete},
    {"MoreThanTheLength", ok + "Content-Length: 2\r\n\r\nokay", State::Complete, 200, "ok",
     State::Complete},
    {"LessThanTheLength", ok + "Content-Length: 3\r\n\r\nok", State::InBody, 200, "ok",
     State::InBody},
    {"SameLengthTwice", ok + "Content-Length: 2\r\nContent-Length: 2\r\n\r\nok", State::Complete,
     200, "ok", State::Complete},
    {"TwoLengths", ok + "Content-Length: 2\r\nContent-Length: 3\r\n\r\nok", State::Malformed, 0, "",
     State::Malformed},
    {"NegativeLength", ok + "Content-Length: -1\r\n\r\n", State::Malformed, 0, "",
     State::Malformed},
    {"SignedLength", ok + "Content-Length: +2\r\n\r\nok", State::Malformed, 0, "",
     State::Malformed},
    {"NoNumberForALength", ok + "Content-Length: 2 2\r\n\r\nok", State::Malformed, 0, "",
     State::Malformed},
    {"LengthBeyondAllNumbers", ok + "Content-Length: 99999999999999999999\r\n\r\n",
     State::Malformed, 0, "", State::Malformed},
    {"LengthOfTheLimit", ok + "Content-Length: 100\r\n\r\n" + QByteArray(100, 'x'), State::Complete,
     200, QByteArray(100, 'x'), State::Complete},
    {"LengthOverTheLimit", ok + "Content-Length: 101\r\n\r\n", State::TooLong, 200, "",
     State::TooLong},
    {"UntilClosed", ok + "\r\nok", State::InBody, 200, "ok", State::Complete},
    {"UntilClosedOverTheLimit", ok + "\r\n" + QByteArray(101, 'x'), State::TooLong, 200, "",
     State::TooLong},
    {"Chunks", ok + "Transfer-Encoding: chunked\r\n\r\n1\r\no\r\n1;x=y\r\nk\r\n0\r\n\r\n",
     State::Complete, 200, "ok", State::Complete},
    {"ChunksInHexadecimal",
     ok + "Transfer-Encoding: Chunked\r\n\r\n0a\r\n0123456789\r\nB\r\n01234567890\r\n0\r\n\r\n",
     State::Complete, 200, "012345678901234567890", State::Complete},
    {"ChunksWithTrailers",
     ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\nA: b\r\nC: d\r\n\r\n", State::Complete,
     200, "ok", State::Complete},
    {"ChunksCountWhateverTheLength",
     ok + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\n\r\n",
     State::Complete, 200, "ok", State::Complete},
    {"ChunksWithoutTheLast", ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nok\r\n", State::InBody,
     200, "ok", State::InBody},
    {"ChunksCutOff", ok + "Transfer-Encoding: chunked\r\n\r\n5\r\nok", State::InBody, 200, "ok",
     State::InBody},
    {"ChunkLargerThanItSays", ok + "Transfer-Encoding: chunked\r\n\r\n1\r\nok\r\n0\r\n\r\n",
     State::Malformed, 200, "", State::Malformed},
    {"NoNumberForAChunk", ok + "Transfer-Encoding: chunked\r\n\r\nzz\r\n", State::Malformed, 200,
     "", State::Malformed},
    {"EmptyChunkSize", ok + "Transfer-Encoding: chunked\r\n\r\n\r\n", State::Malformed, 200, "",
     State::Malformed},
    {"ChunkOverTheLimit", ok + "Transfer-Encoding: chunked\r\n\r\n65\r\n", State::TooLong, 200, "",
     State::TooLong},
    {"ChunksOverTheLimitTogether",
     ok + "Transfer-Encoding: chunked\r\n\r\n64\r\n" + QByteArray(100, 'x') + "\r\n1\r\n",
     State::TooLong, 200, "", State::TooLong},
    {"HugeChunk", ok + "Transfer-Encoding: chunked\r\n\r\n80000000\r\n", State::TooLong, 200, "",
     State::TooLong},
    {"ChunkBeyondAllNumbers", ok + "Transfer-Encoding: chunked\r\n\r\nffffffffffffffffff\r\n",
     State::Malformed, 200, "", State::Malformed},
    {"NoContent", "HTTP/1.1 204 No\r\nContent-Length: 5\r\n\r\n", State::Complete, 204, "",
     State::Complete},
    {"NotModified", "HTTP/1.1 304 No\r\nContent-Length: 5\r\n\r\n", State::Complete, 304, "",
     State::Complete},
    {"Interim", "HTTP/1.1 100 Continue\r\n\r\n", State::InHead, 0, "", State::InHead},
    {"InterimAndFinal",
     "HTTP/1.1 103 Early\r\nContent-Length: 7\r\nTransfer-Encoding: chunked\r\n\r\n" + ok +
         "Content-Length: 2\r\n\r\nok",
     State::Complete, 200, "ok", State::Complete},
    {"SwitchIsFinal", "HTTP/1.1 101 Switching\r\n\r\n", State::InBody, 101, "", State::Complete},
    {"OldVersion", "HTTP/1.0 200 OK\r\n\r\nok", State::InBody, 200, "ok", State::Complete},
    {"NoReason", "HTTP/1.1 200\r\nContent-Length: 0\r\n\r\n", State::Complete, 200, "",
     State::Complete},
    {"EmptyReason", "HTTP/1.1 200 \r\nContent-Length: 0\r\n\r\n", State::Complete, 200, "",
     State::Complete},
    {"BareLineFeeds", "HTTP/1.1 200 OK\nContent-Length: 2\n\nok", State::Complete, 200, "ok",
     State::Complete},
    {"AnyCaseAndSpaces", ok + "cOnTeNt-LeNgTh:\t 2 \r\n\r\nok", State::Complete, 200, "ok",
     State::Complete},
    {"LineWithoutAColon", ok + "nonsense\r\nContent-Length: 2\r\n\r\nok", State::Complete, 200,
     "ok", State::Complete},
    {"LargestStatus", "HTTP/1.1 999 X\r\nContent-Length: 0\r\n\r\n", State::Complete, 999, "",
     State::Complete},
    {"SmallStatus", "HTTP/1.1 099 X\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"ShortStatus", "HTTP/1.1 20 X\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"LongStatus", "HTTP/1.1 2000 X\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"NoStatus", "HTTP/1.1\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"TwoSpaces", "HTTP/1.1  200 X\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"OtherVersion", "HTTP/2 200\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"NoVersion", "HTTP/one 200 OK\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"AnotherProtocol", "SSH-2.0-OpenSSH_9.2\r\n", State::Malformed, 0, "", State::Malformed},
    {"LowerCase", "http/1.1 200 OK\r\n\r\n", State::Malformed, 0, "", State::Malformed},
    {"OtherFromTheFirstByte", QByteArray(1, '\0'), State::Malformed, 0, "", State::Malformed},
    {"LineBeforeTheStatus", "\r\nHTTP/1.1 200 OK\r\n\r\n", State::Malformed, 0, "",
     State::Malformed},
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.name;
}

class Answers : public ::testing::TestWithParam<Row> {
protected:
    static void expect(const HttpAnswerParser& parser, State state) {
        EXPECT_EQ(parser.state(), state);
        EXPECT_EQ(parser.status(), GetParam().status);
        EXPECT_EQ(parser.body(), GetParam().body);
    }
};

} // namespace

TEST_P(Answers, AreReadAtOnce) {
    HttpAnswerParser parser(limit);
    EXPECT_EQ(parser.feed(GetParam().answer), GetParam().state);
    expect(parser, GetParam().state);
    EXPECT_EQ(parser.end(), GetParam().stateAtEnd);
}

TEST_P(Answers, AreReadByteByByte) {
    HttpAnswerParser parser(limit);
    for (const char byte : GetParam().answer) {
        parser.feed(QByteArray(1, byte));
    }
    expect(parser, GetParam().state);
    EXPECT_EQ(parser.end(), GetParam().stateAtEnd);
}

INSTANTIATE_TEST_SUITE_P(All, Answers, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(AnswerHeads, MayBeLong) {
    HttpAnswerParser parser(limit);
    const qsizetype most = HttpAnswerParser::headLimit - ok.size() - 7;
    parser.feed(ok + "A: " + QByteArray(most, 'x') + "\r\n\r\n");
    EXPECT_EQ(parser.state(), State::InBody);
}

TEST(AnswerHeads, AreNotCollectedForEver) {
    const QByteArray block(4096, 'x');
    for (const QByteArray& endless : {block, block.chopped(2) + "\r\n"}) {
        HttpAnswerParser parser(limit);
        parser.feed(ok + "A: b");
        int blocks = 0;
        while (parser.feed(endless) == State::InHead) {
            ASSERT_LT(++blocks, 17);
        }
        EXPECT_EQ(parser.state(), State::Malformed);
    }
}

TEST(AnswerHeads, OfInterimAnswersAreNotReadForEver) {
    HttpAnswerParser parser(limit);
    int answers = 0;
    while (parser.feed("HTTP/1.1 100 Continue\r\n\r\n") == State::InHead) {
        ASSERT_LT(++answers, 3000);
    }
    EXPECT_EQ(parser.state(), State::Malformed);
}

namespace {

/// Good answers with random harm done to them.
class HarmedAnswers {
public:
    explicit HarmedAnswers(unsigned seed) : m_engine(seed) {}

    QByteArray next() {
        QByteArray answer = rows[below(std::size(rows))].answer;
        for (std::size_t left = 1 + below(3); left > 0; --left) {
            harm(answer);
        }
        return answer;
    }
    std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_engine);
    }

private:
    void harm(QByteArray& answer) {
        static const std::array<QByteArray, 10> pieces = {"\r\n",
                                                          "\n",
                                                          "\r",
                                                          "HTTP/1.1 100 C\r\n\r\n",
                                                          "Content-Length: 1\r\n",
                                                          "Transfer-Encoding: chunked\r\n",
                                                          "0\r\n\r\n",
                                                          "ffffffffffff",
                                                          ";",
                                                          ":"};
        const auto at = static_cast<qsizetype>(below(static_cast<std::size_t>(answer.size()) + 1));
        switch (below(4)) {
        case 0:
            answer.remove(at, static_cast<qsizetype>(below(8)));
            break;
        case 1:
            answer.insert(at, pieces[below(pieces.size())]);
            break;
        case 2:
            answer.insert(at, static_cast<char>(below(256)));
            break;
        default:
            answer.truncate(at);
        }
    }

    std::mt19937 m_engine;
};

class AnswerFuzz : public ::testing::TestWithParam<unsigned> {};

} // namespace

TEST_P(AnswerFuzz, IsReadTheSameHoweverItIsCut) {
    constexpr int rounds = 10'000;
    HarmedAnswers answers(GetParam());
    int complete = 0;
    for (int i = 0; i < rounds && !HasFailure(); ++i) {
        const QByteArray answer = answers.next();
        HttpAnswerParser whole(limit);
        whole.feed(answer);
        HttpAnswerParser cut(limit);
        for (qsizetype at = 0; at < answer.size();) {
            const auto count = 1 + static_cast<qsizetype>(answers.below(9));
            cut.feed(answer.mid(at, count));
            at += count;
        }
        EXPECT_EQ(whole.state(), cut.state()) << answer.constData();
        EXPECT_EQ(whole.status(), cut.status()) << answer.constData();
        EXPECT_EQ(whole.body(), cut.body()) << answer.constData();
        EXPECT_LE(whole.body().size(), limit);
        complete += whole.end() == State::Complete ? 1 : 0;
    }
    // Answers that are all refused, or all taken, would prove nothing.
    EXPECT_GT(complete, rounds / 20);
    EXPECT_LT(complete, rounds * 9 / 10);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AnswerFuzz, ::testing::Range(1U, 9U));

} // namespace snapvane
