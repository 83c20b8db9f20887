"""From outside the browser: requests without a session, with a forged one, from another
site's page or without the page's token change nothing; a real login does."""
import sys
import unittest

from station_fixture import Station, PASSWORDS

JSON = {"Content-Type": "application/json"}


class OutsideRequests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.st = Station(sys.argv[1], sys.argv[2])

    @classmethod
    def tearDownClass(cls):
        cls.state = cls.st.stop()

    def login(self, user):
        status, body, headers = self.st.request(
            "api/login", {"user": user, "password": PASSWORDS[user]}, JSON)
        self.assertEqual(status, 200, body)
        cookie = headers["Set-Cookie"]
        self.assertIn("HttpOnly", cookie)
        self.assertIn("SameSite=Strict", cookie)
        return cookie.split(";")[0], body["csrf"]

    def test_a_write_without_a_session_is_refused(self):
        status, body, _ = self.st.request("api/write", {"tag": "SETPT", "value": "11"}, JSON)
        self.assertEqual(status, 401)
        self.assertEqual(body["error"], "not logged in")
        status, _, _ = self.st.request("api/acknowledge", {}, JSON)
        self.assertEqual(status, 401)

    def test_a_forged_session_is_refused(self):
        h = dict(JSON, Cookie="kova_session=" + "a" * 64)
        h["X-KOVA-CSRF"] = "b" * 64
        status, body, _ = self.st.request("api/write", {"tag": "SETPT", "value": "12"}, h)
        self.assertEqual(status, 401)

    def test_a_real_session_without_its_token_or_from_another_site_is_refused(self):
        cookie, csrf = self.login("otto")
        h = dict(JSON, Cookie=cookie)
        status, body, _ = self.st.request("api/write", {"tag": "SETPT", "value": "13"}, h)
        self.assertEqual(status, 403)
        self.assertEqual(body["error"], "the page's write token is missing or wrong")
        h2 = dict(h, **{"X-KOVA-CSRF": csrf, "Origin": "http://evil.example"})
        status, body, _ = self.st.request("api/write", {"tag": "SETPT", "value": "13"}, h2)
        self.assertEqual(status, 403)
        self.assertEqual(body["error"], "the request came from a page of another site")

    def test_a_viewer_cannot_write(self):
        cookie, csrf = self.login("vera")
        h = dict(JSON, Cookie=cookie, **{"X-KOVA-CSRF": csrf})
        status, body, _ = self.st.request("api/minmax/reset", {}, h)
        self.assertEqual(status, 403)
        self.assertEqual(body["error"], "user vera is a viewer")

    def test_wrong_passwords_slow_further_logins(self):
        for _ in range(3):
            status, _, _ = self.st.request("api/login", {"user": "nobody", "password": "x"}, JSON)
            self.assertEqual(status, 401)
        status, body, _ = self.st.request("api/login", {"user": "nobody", "password": "x"}, JSON)
        self.assertEqual(status, 429)
        self.assertIn("too many failed logins", body["error"])

    def test_oversized_and_hostile_requests_get_an_answer_not_a_crash(self):
        cookie, csrf = self.login("otto")
        h = dict(JSON, Cookie=cookie, **{"X-KOVA-CSRF": csrf})
        status, _, _ = self.st.request("api/write", {"tag": "A" * 10000, "value": "1"}, h)
        self.assertEqual(status, 413)
        status, body, _ = self.st.request("api/write", {"tag": "BAD\u001b[2J", "value": "1"}, h)
        self.assertEqual(status, 409)
        self.assertIn("\\x1B[2J", body["line"])
        status, body, _ = self.st.request("api/history/columns?file=..%2Fusers.txt", None, {},
                                          "GET")
        self.assertEqual(status, 404)
        status, body, _ = self.st.request("api/history/columns?file=%2Fetc%2Fpasswd", None, {},
                                          "GET")
        self.assertEqual(status, 404)
        status, body, _ = self.st.request("api/trend?n=11", None, {}, "GET")
        self.assertEqual(status, 400)

    def test_an_operator_write_is_applied_and_named_in_the_output(self):
        cookie, csrf = self.login("otto")
        h = dict(JSON, Cookie=cookie, **{"X-KOVA-CSRF": csrf})
        status, body, _ = self.st.request("api/write", {"tag": "STARTS", "value": "7"}, h)
        self.assertEqual(status, 200, body)
        self.assertEqual(body["line"], "web user otto from 127.0.0.1: STARTS set to 7")
        self.assertIn("web user otto from 127.0.0.1: STARTS set to 7", self.st.stdout())
        status, body, _ = self.st.request("api/write", {"tag": "LEVEL", "value": "7"}, h)
        self.assertEqual(status, 409)
        self.assertEqual(body["line"], "web user otto from 127.0.0.1: refused: LEVEL is an input")


class OverHttps(unittest.TestCase):
    """With a certificate the page is HTTPS and the session cookie is only sent over it."""

    def test_login_over_https_gives_a_secure_cookie_and_writes_work(self):
        st = Station(sys.argv[1], sys.argv[2], certificate=True)
        try:
            self.assertTrue(st.url.startswith("https://"))
            status, body, headers = st.request(
                "api/login", {"user": "otto", "password": PASSWORDS["otto"]}, JSON)
            self.assertEqual(status, 200, body)
            self.assertIn("; Secure", headers["Set-Cookie"])
            h = dict(JSON, Cookie=headers["Set-Cookie"].split(";")[0],
                     **{"X-KOVA-CSRF": body["csrf"]})
            status, body, _ = st.request("api/write", {"tag": "LAMP", "value": "1"}, h)
            self.assertEqual(status, 200, body)
        finally:
            state = st.stop()
        self.assertEqual(st.tag_value(state, "LAMP"), 1)


def main():
    suite = unittest.defaultTestLoader.loadTestsFromTestCase(OutsideRequests)
    suite.addTests(unittest.defaultTestLoader.loadTestsFromTestCase(OverHttps))
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    if not result.wasSuccessful():
        return 1
    # Nothing the refused requests asked for reached the station.
    state = OutsideRequests.state
    st = OutsideRequests.st
    if st.tag_value(state, "SETPT") in (11, 12, 13):
        print("a refused write reached the station")
        return 1
    if st.tag_value(state, "STARTS") != 7:
        print("the operator's write is not in the station's state")
        return 1
    print("%d passed, 0 failed" % result.testsRun)
    return 0


if __name__ == "__main__":
    sys.exit(main())
