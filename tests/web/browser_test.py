"""The station's page in a real browser (headless Chromium through its WebDriver): values
change, an alarm raised by the scan appears, a viewer cannot write, an operator logs in,
acknowledges it and sets a variable that the station's state then holds, and the history of
a log the station wrote charts its values. Exit 77 (skipped) without Chromium or Selenium."""
import os
import shutil
import sys
import tempfile
import time

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.ui import Select, WebDriverWait
except ImportError:
    print("skipped: python3-selenium is not installed")
    sys.exit(77)

from station_fixture import Station, PASSWORDS

CHROMEDRIVER = shutil.which("chromedriver") or "/usr/bin/chromedriver"


def browser(shots):
    o = webdriver.ChromeOptions()
    for flag in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic",
                 "--no-first-run", "--disable-background-networking",
                 "--disable-component-update", "--disable-sync", "--window-size=1100,1100",
                 "--user-data-dir=" + tempfile.mkdtemp(prefix="kova-chromium-")):
        o.add_argument(flag)
    o.binary_location = shutil.which("chromium") or "/usr/bin/chromium"
    return webdriver.Chrome(service=Service(CHROMEDRIVER), options=o)


class Check:
    def __init__(self, driver, shots):
        self.d, self.shots, self.failures, self.passed = driver, shots, [], 0

    def wait(self, what, condition, timeout=20):
        try:
            WebDriverWait(self.d, timeout, poll_frequency=0.2).until(lambda d: condition())
            self.passed += 1
            print("ok   " + what)
            return True
        except Exception as e:  # noqa: BLE001 - any failure is reported by name
            self.failures.append(what)
            print("FAIL " + what + " (" + type(e).__name__ + ")")
            self.shot("failed-" + str(len(self.failures)))
            return False

    def shot(self, name):
        if self.shots:
            self.d.save_screenshot(os.path.join(self.shots, name + ".png"))

    def text(self, element_id):
        return self.d.find_element(By.ID, element_id).text

    def click(self, element_id):
        self.d.find_element(By.ID, element_id).click()

    def message(self):
        return self.text("message")

    def login(self, user):
        self.d.find_element(By.ID, "login-user").send_keys(user)
        self.d.find_element(By.ID, "login-password").send_keys(PASSWORDS[user] + Keys.ENTER)


def run(kova_cli, source_dir, shots):
    st = Station(kova_cli, source_dir)
    d = browser(shots)
    c = Check(d, shots)
    try:
        d.get(st.url)
        c.wait("the page connects", lambda: "Connected" in c.text("connection"))
        first = c.text("an-value-0")
        c.wait("values change while the page is open", lambda: c.text("an-value-0") != first)
        c.shot("1-readings")

        c.click("tab-alarms")
        c.click("alarms-history")
        c.wait("an alarm raised by the scan appears in the history",
               lambda: "ALARM " in c.text("alarm-lines"))
        c.click("alarms-current")
        c.shot("2-alarms")

        c.login("vera")
        c.wait("a viewer logs in", lambda: "Logged in as vera (viewer)" in c.text("who-text"))
        c.wait("a viewer's Acknowledge button is disabled",
               lambda: not d.find_element(By.ID, "alarms-ack").is_enabled())
        status = d.execute_async_script(
            "const done = arguments[0];"
            "fetch('/api/session').then(r => r.json()).then(s => fetch('/api/acknowledge', {"
            " method: 'POST', headers: {'Content-Type': 'application/json', 'X-KOVA-CSRF': s.csrf},"
            " body: '{}'})).then(r => done(r.status));")
        c.wait("a viewer's acknowledge is refused by the station", lambda: status == 403)
        c.click("logout-button")
        c.wait("the viewer logs out", lambda: d.find_element(By.ID, "login-user").is_displayed())

        c.login("otto")
        c.wait("an operator logs in", lambda: "Logged in as otto (operator)" in c.text("who-text"))
        c.wait("the operator's Acknowledge button is enabled",
               lambda: d.find_element(By.ID, "alarms-ack").is_enabled())
        c.click("alarms-history")
        c.click("alarms-ack")
        c.wait("acknowledging answers with the line naming the operator",
               lambda: c.message() == "web user otto from 127.0.0.1: alarms acknowledged")
        c.wait("the history shows the alarm acknowledged", lambda: "ACKN " in c.text("alarm-lines"))
        c.shot("3-acknowledged")

        c.click("tab-readings")
        # V-Level Setpoint, analog row 6 of screen 1.
        box = d.find_element(By.ID, "an-value-5")
        box.click()  # the cursor in the box: the refresh leaves it alone
        box.send_keys(Keys.CONTROL, "a")
        box.send_keys("72.5" + Keys.ENTER)
        c.wait("the operator's write answers with its line",
               lambda: c.message() == "web user otto from 127.0.0.1: SETPT set to 72.5")
        c.wait("the page shows the value the station holds",
               lambda: d.find_element(By.ID, "an-value-5").get_attribute("value") == "72.5")
        c.shot("4-written")

        c.click("tab-trends")
        c.wait("the trend charts four pens from the trend ring", lambda: d.execute_script(
            "const ch = Chart.getChart('trend-chart');"
            "return ch && ch.data.datasets.length === 4 &&"
            " ch.data.datasets[0].data.length === 200;"))
        c.shot("5-trend")

        c.click("tab-history")
        c.wait("the log folder lists the log the station wrote", lambda: any(
            o.get_attribute("value") == "EARLIER.CSV"
            for o in d.find_elements(By.CSS_SELECTOR, "#history-file option")))
        Select(d.find_element(By.ID, "history-file")).select_by_value("EARLIER.CSV")
        c.wait("its columns are offered", lambda: len(
            d.find_elements(By.CSS_SELECTOR, "#history-columns input")) > 2)
        boxes = d.find_elements(By.CSS_SELECTOR, "#history-columns input")
        labels = [b.find_element(By.XPATH, "..").text for b in boxes]
        boxes[labels.index("Tank Level")].click()
        c.wait("the history charts the logged values", lambda: d.execute_script(
            "const ch = Chart.getChart('history-chart');"
            "return ch && ch.data.datasets.length === 1 &&"
            " ch.data.datasets[0].data.slice(0, 30).some(v => v !== 0);"))
        c.wait("the rows read are named", lambda: c.text("history-rows") == "Rows 1 to 30")
        c.shot("6-history")

        d.set_window_size(390, 900)
        c.click("tab-readings")
        c.shot("7-phone")
        width = d.execute_script("return document.documentElement.scrollWidth")
        c.wait("the page fits a phone's width", lambda: width <= 400)

        st.proc.send_signal(19)  # SIGSTOP: the station stops answering
        c.wait("the page says when the station stops answering",
               lambda: d.find_element(By.ID, "not-answering").is_displayed(), timeout=15)
        c.shot("8-not-answering")
        st.proc.send_signal(18)  # SIGCONT
    finally:
        d.quit()
        state = st.stop()
    if st.tag_value(state, "SETPT") == 72.5:
        c.passed += 1
        print("ok   the station's state holds the variable the operator set")
    else:
        c.failures.append("the station's state holds the variable the operator set")
        print("FAIL the station's state holds the variable the operator set")
    print("%d passed, %d failed" % (c.passed, len(c.failures)))
    return 1 if c.failures else 0


if __name__ == "__main__":
    if not shutil.which("chromium") or not os.path.exists(CHROMEDRIVER):
        print("skipped: chromium or chromium-driver is not installed")
        sys.exit(77)
    shots = sys.argv[3] if len(sys.argv) > 3 else ""
    if shots:
        os.makedirs(shots, exist_ok=True)
    sys.exit(run(sys.argv[1], sys.argv[2], shots))
