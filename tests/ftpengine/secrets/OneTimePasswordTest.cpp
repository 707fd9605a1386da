#include "ftpengine/secrets/OneTimePassword.h"

#include <cstring>
#include <set>

#include <QCryptographicHash>

TEST(OneTimePassword, AgreesWithTheStandardsTestVectors)
{
    // RFC 2289, appendix C, with the seeds in lower case.
    const struct {
        const char* password;
        const char* seed;
        int number;
        const char* response;
    } rows[] = {
        {"This is a test.", "test", 0, "INCH SEA ANNE LONG AHEM TOUR"},
        {"This is a test.", "test", 1, "EASE OIL FUM CURE AWRY AVIS"},
        {"This is a test.", "test", 99, "BAIL TUFT BITS GANG CHEF THY"},
        {"AbCdEfGhIjK", "alpha1", 0, "FULL PEW DOWN ONCE MORT ARC"},
        {"AbCdEfGhIjK", "alpha1", 1, "FACT HOOF AT FIST SITE KENT"},
        {"AbCdEfGhIjK", "alpha1", 99, "BODE HOP JAKE STOW JUT RAP"},
        {"OTP's are good", "correct", 0, "ULAN NEW ARMY FUSE SUIT EYED"},
        {"OTP's are good", "correct", 1, "SKIM CULT LOB SLAM POE HOWL"},
        {"OTP's are good", "correct", 99, "LONG IVY JULY AJAR BOND LEE"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MakeOtpResponse({row.number, row.seed}, row.password), row.response);
    }
}

TEST(OneTimePassword, DoesNotFoldTheSeed)
{
    EXPECT_NE(MakeOtpResponse({0, "TeSt"}, "This is a test."), "INCH SEA ANNE LONG AHEM TOUR");
}

TEST(OneTimePassword, ReadsTheChallengeOfAReply)
{
    const struct {
        const char* reply;
        int number;
        const char* seed;
    } rows[] = {
        {"331 otp-md5 99 seed ext", 99, "seed"},
        {"331 otp-md5 99 seed ext\r\n", 99, "seed"},
        {"331 otp-md5 99 seed\r\n", 99, "seed"},
        {"331 otp-md5 99 seed", 99, "seed"},
        {"331 [otp-md5 0 SeEd ext] x\r\n", 0, "SeEd"},
        {"331 otp-md5 99  seed ext\r\n", 99, " seed"}, // a blank at its head belongs to the seed
        {"331 otp-md5 x seed ext\r\n", 0, "seed"},
        {"331 otp-md5 -5 seed ext\r\n", -5, "seed"},
        {"331 otp-md5 99", 99, ""},
        {"331 otp-md5 ", 0, ""},
        {"331 otp-md5", 0, ""},
        {"331 otp-md5\r\n", 0, ""},
        {"331 otp-md5 1 a otp-md5 2 b ", 1, "a"},
        {"331 otp-md5 99999999999 seed ext", 2147483647, "seed"},
    };
    for (const auto& row : rows) {
        const auto challenge = FindOtpChallenge(row.reply);
        ASSERT_TRUE(challenge.has_value()) << row.reply;
        EXPECT_EQ(challenge->sequenceNumber, row.number) << row.reply;
        EXPECT_EQ(challenge->seed, row.seed) << row.reply;
    }
}

TEST(OneTimePassword, WithoutAChallengeThePasswordIsSentAsItIs)
{
    for (const char* reply :
         {"", "331 password please\r\n", "331 OTP-MD5 99 seed ext", "331 otp-sha1 99 seed ext"}) {
        EXPECT_EQ(AnswerPasswordRequest(reply, "p ss"), "p ss") << reply;
    }
}

TEST(OneTimePassword, AnswersWithSixWords)
{
    EXPECT_EQ(AnswerPasswordRequest("331 otp-md5 99 test ext\r\n", "This is a test."),
              "BAIL TUFT BITS GANG CHEF THY");
    EXPECT_EQ(AnswerPasswordRequest("331 otp-md5 0 test ext\r\n", "This is a test."),
              "INCH SEA ANNE LONG AHEM TOUR");
    EXPECT_EQ(AnswerPasswordRequest("331 otp-md5 -7 test ext\r\n", "This is a test."),
              "INCH SEA ANNE LONG AHEM TOUR");
}

TEST(OneTimePassword, RefusesToComputeForLong)
{
    EXPECT_THROW(AnswerPasswordRequest("331 otp-md5 2000000000 test ext\r\n", "x"), int);
}

TEST(OneTimePassword, TheDictionaryIsThatOfTheStandard)
{
    EXPECT_STREQ(OneTimePasswordWords[0], "A");
    EXPECT_STREQ(OneTimePasswordWords[570], "YOU");
    EXPECT_STREQ(OneTimePasswordWords[571], "ABED");
    EXPECT_STREQ(OneTimePasswordWords[2047], "YOKE");
    std::set<std::string> words;
    for (const auto& word : OneTimePasswordWords) {
        words.insert(word);
    }
    EXPECT_EQ(words.size(), 2048u);
    std::string all;
    for (const auto& word : OneTimePasswordWords) {
        all += word;
    }
    const auto digest = QCryptographicHash::hash(QByteArray::fromStdString(all), QCryptographicHash::Md5);
    EXPECT_EQ(digest.toHex(), "738c0c6b56a48cbe320989e94491ea22");
}
