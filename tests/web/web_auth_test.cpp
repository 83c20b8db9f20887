// Who may do what on the station's page: password hashes, the users file, sessions, the
// login throttle and the checks every write passes.
#include <gtest/gtest.h>

#include "links/web/login_throttle.h"
#include "links/web/password_hash.h"
#include "links/web/web_sessions.h"
#include "links/web/web_users.h"
#include "links/web/write_guard.h"

namespace kova::web {

TEST(PasswordHash, IsSaltedAndOnlyTheRightPasswordMatches) {
    const std::string a = HashPassword("correct horse");
    const std::string b = HashPassword("correct horse");
    ASSERT_EQ(a.rfind("$y$", 0), 0u);
    EXPECT_NE(a, b);  // a new salt each time
    EXPECT_TRUE(VerifyPassword("correct horse", a));
    EXPECT_TRUE(VerifyPassword("correct horse", b));
    EXPECT_FALSE(VerifyPassword("correct horsE", a));
    EXPECT_FALSE(VerifyPassword("", a));
    EXPECT_FALSE(VerifyPassword("correct horse", "not a hash"));
    EXPECT_FALSE(VerifyPassword("correct horse", ""));
}

TEST(WebUsers, ReadsNameRoleAndHashAndSkipsCommentsAndBlankLines) {
    const std::string hash = HashPassword("secret-password");
    WebUsers users;
    std::string error;
    ASSERT_TRUE(
        users.parse("# station users\n\nann:operator:" + hash + "\nbob:viewer:" + hash + "\r\n",
                    "users.txt", error))
        << error;
    ASSERT_NE(users.find("ann"), nullptr);
    EXPECT_EQ(users.find("ann")->role, Role::Operator);
    EXPECT_EQ(users.find("bob")->role, Role::Viewer);
    EXPECT_EQ(users.find("carl"), nullptr);
}

TEST(WebUsers, ABadLineIsNamedWithTheFileAndItsNumber) {
    WebUsers users;
    std::string error;
    EXPECT_FALSE(users.parse("ann:admin:$y$abc\n", "users.txt", error));
    EXPECT_EQ(error, "the users file users.txt, line 1: the role must be viewer or operator");
    EXPECT_FALSE(users.parse("\nann:operator\n", "users.txt", error));
    EXPECT_EQ(error, "the users file users.txt, line 2: expected name:role:hash");
    EXPECT_FALSE(users.parse("a n:operator:$y$x\n", "u", error));
    EXPECT_FALSE(users.parse("ann:operator:plain\n", "u", error));
    EXPECT_FALSE(users.parse("ann:viewer:$y$x\nann:operator:$y$x\n", "u", error));
    EXPECT_EQ(error, "the users file u, line 2: user ann is named twice");
    EXPECT_FALSE(users.load("/nonexistent/users.txt", error));
    EXPECT_NE(error.find("/nonexistent/users.txt"), std::string::npos);
}

TEST(WebUsers, ANewPasswordReplacesTheUsersLineAndKeepsTheOthers) {
    const std::string text = "# users\nann:viewer:$y$old\nbob:operator:$y$bob\n";
    EXPECT_EQ(WebUsers::WithUser(text, "ann", Role::Operator, "$y$new"),
              "# users\nann:operator:$y$new\nbob:operator:$y$bob\n");
    EXPECT_EQ(WebUsers::WithUser(text, "carl", Role::Viewer, "$y$c"), text + "carl:viewer:$y$c\n");
}

TEST(WebSessions, ASessionIsFoundByItsTokenOnlyAndEndsWhenIdle) {
    SessionStore store(std::chrono::seconds(60));
    const auto t0 = Clock::now();
    const auto s = store.create("ann", Role::Operator, "127.0.0.1", t0);
    ASSERT_TRUE(s);
    EXPECT_EQ(s->id.size(), 64u);
    EXPECT_NE(s->id, s->csrf);
    EXPECT_TRUE(store.find(s->id, t0 + std::chrono::seconds(30)));
    EXPECT_FALSE(store.find(std::string(64, 'a'), t0));
    EXPECT_FALSE(store.find(s->id.substr(0, 63), t0));
    EXPECT_TRUE(store.find(s->id, t0 + std::chrono::seconds(80)));    // used at 30 s: alive
    EXPECT_FALSE(store.find(s->id, t0 + std::chrono::seconds(200)));  // idle too long
}

TEST(WebSessions, TheOldestSessionGoesWhenTheStoreIsFullAndLogoutEndsOne) {
    SessionStore store(std::chrono::hours(1), 2);
    const auto t0 = Clock::now();
    const auto a = store.create("a", Role::Viewer, "x", t0);
    const auto b = store.create("b", Role::Viewer, "x", t0 + std::chrono::seconds(1));
    const auto c = store.create("c", Role::Viewer, "x", t0 + std::chrono::seconds(2));
    EXPECT_FALSE(store.find(a->id, t0 + std::chrono::seconds(3)));
    EXPECT_TRUE(store.find(b->id, t0 + std::chrono::seconds(3)));
    store.remove(c->id);
    EXPECT_FALSE(store.find(c->id, t0 + std::chrono::seconds(3)));
    EXPECT_EQ(store.size(), 1u);
}

TEST(LoginThrottle, ThreeFailuresAreFreeThenEachWaitDoubles) {
    LoginThrottle t;
    const auto t0 = LoginThrottle::Clock::now();
    for (int i = 0; i < 2; ++i) t.failed("ann", "10.0.0.1", t0);
    EXPECT_EQ(t.waitBefore("ann", "10.0.0.1", t0).count(), 0);
    t.failed("ann", "10.0.0.1", t0);
    EXPECT_EQ(t.waitBefore("ann", "10.0.0.1", t0).count(), 2);
    EXPECT_EQ(t.waitBefore("ann", "10.0.0.2", t0).count(), 2);  // the user is slowed everywhere
    EXPECT_EQ(t.waitBefore("bob", "10.0.0.1", t0).count(), 2);  // and the address for everyone
    EXPECT_EQ(t.waitBefore("bob", "10.0.0.2", t0).count(), 0);
    t.failed("ann", "10.0.0.1", t0);
    EXPECT_EQ(t.waitBefore("ann", "10.0.0.1", t0).count(), 4);
    EXPECT_EQ(t.waitBefore("ann", "10.0.0.1", t0 + std::chrono::seconds(4)).count(), 0);
    for (int i = 0; i < 20; ++i) t.failed("ann", "10.0.0.1", t0);
    EXPECT_EQ(t.waitBefore("ann", "10.0.0.1", t0).count(), 300);  // never longer than 5 min
    t.succeeded("ann", "10.0.0.1");
    EXPECT_EQ(t.waitBefore("ann", "10.0.0.1", t0).count(), 0);
}

TEST(LoginThrottle, ItsTableStaysBoundedUnderFailuresFromEverywhere) {
    LoginThrottle t(100);
    const auto t0 = LoginThrottle::Clock::now();
    for (int i = 0; i < 10000; ++i) t.failed("u" + std::to_string(i), "a" + std::to_string(i), t0);
    EXPECT_EQ(t.waitBefore("u9999", "a9999", t0).count(), 0);  // not tracked: the table is full
}

namespace {
RequestFacts loopback() {
    RequestFacts r;
    r.remoteAddress = "127.0.0.1";
    r.host = "127.0.0.1:8080";
    r.csrf = "t0k3n";
    return r;
}
Session operatorSession() {
    Session s;
    s.user = "ann";
    s.role = Role::Operator;
    s.csrf = "t0k3n";
    return s;
}
}  // namespace

TEST(WriteGuard, AnOperatorWithTheSessionsTokenOnLoopbackMayWrite) {
    EXPECT_EQ(CheckWrite(loopback(), operatorSession()).status, 200);
    RequestFacts sameSite = loopback();
    sameSite.origin = "http://127.0.0.1:8080";
    EXPECT_EQ(CheckWrite(sameSite, operatorSession()).status, 200);
}

TEST(WriteGuard, EveryMissingPieceRefusesTheWrite) {
    EXPECT_EQ(CheckWrite(loopback(), std::nullopt).status, 401);
    RequestFacts noToken = loopback();
    noToken.csrf.clear();
    EXPECT_EQ(CheckWrite(noToken, operatorSession()).reason,
              "the page's write token is missing or wrong");
    RequestFacts otherSite = loopback();
    otherSite.origin = "http://evil.example";
    EXPECT_EQ(CheckWrite(otherSite, operatorSession()).reason,
              "the request came from a page of another site");
    RequestFacts httpsOrigin = loopback();
    httpsOrigin.origin = "https://127.0.0.1:8080";  // the scheme must match too
    EXPECT_EQ(CheckWrite(httpsOrigin, operatorSession()).status, 403);
    Session viewer = operatorSession();
    viewer.role = Role::Viewer;
    EXPECT_EQ(CheckWrite(loopback(), viewer).reason, "user ann is a viewer");
}

TEST(WriteGuard, PlainHttpFromAnotherMachineCarriesNoWriteButTlsDoes) {
    RequestFacts remote = loopback();
    remote.remoteAddress = "192.0.2.7";
    EXPECT_EQ(CheckWrite(remote, operatorSession()).status, 403);
    EXPECT_NE(ConnectionRefusal(remote).find("HTTPS"), std::string::npos);
    remote.tls = true;
    EXPECT_EQ(CheckWrite(remote, operatorSession()).status, 200);
    EXPECT_TRUE(IsLoopbackAddress("::1"));
    EXPECT_TRUE(IsLoopbackAddress("127.3.4.5"));
    EXPECT_TRUE(IsLoopbackAddress("::ffff:127.0.0.1"));
    EXPECT_FALSE(IsLoopbackAddress("1270.0.0.1"));
    EXPECT_FALSE(IsLoopbackAddress("10.0.0.1"));
}

TEST(WriteGuard, CookieValuesAreFoundByExactName) {
    EXPECT_EQ(CookieValue("a=1; kova_session=abc; b=2", "kova_session"), "abc");
    EXPECT_EQ(CookieValue("xkova_session=abc", "kova_session"), "");
    EXPECT_EQ(CookieValue("", "kova_session"), "");
    EXPECT_EQ(CookieValue(std::string(5000, 'x') + "; kova_session=late", "kova_session"), "");
    EXPECT_FALSE(SameToken("", ""));
    EXPECT_TRUE(SameToken("abc", "abc"));
    EXPECT_FALSE(SameToken("abc", "abd"));
}

}  // namespace kova::web
