"""Plays the steps of transcripts/*.txt on the page, and tells what a person sees and hears after each.

A step is a line that begins with "$ ", a comment one with "#". What follows a step was approved: the
lines that went ("- ") and came ("+ "), each a part of the page with its role, name and states as a
reader has them, its place within the part around it, its ink and edge; then ("! ") what left the page.
It is read once nothing more comes by itself (inside.js).
  start {}, stop, again         a sandbox of this scenario, and its page; its end; once more
  open #people, see 1280x800 light    the page anew; the window; look NAME: for what cannot be read, at any width
  click, hover SELECTOR, press TAB 250     by mouse, by keys
  call NAME {} [seconds], later    a right call, or one that is signed so; one that is held back
  ask PATH {}, get PATH         of the page's calls, by somebody else; get tells the answer
  raw GET / HTTP/1.1, many 4000    at the service; refused at once
  do, until SCRIPT              within the page, which has pass(4000) for so many ms of all that takes a second or
    longer, hold() for the answers to come, and arrive() for all of them or arrive('PATH') for the last of that path
"""

import base64, contextlib, difflib, hashlib, hmac, json, pathlib, re, socket, sys, threading, time
from http.client import HTTPConnection, HTTPException

from selenium.common.exceptions import WebDriverException
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

sys.path.append(str(pathlib.Path(__file__).parent.parent / "support"))
from sandbox import SECRET, SIGNING_KEY, Sandbox  # noqa: E402

INK = ("color", "background-color", "font-size", "font-weight", "text-align", "opacity", "outline-style", "cursor")
SIDES = ("top", "right", "bottom", "left")
EDGE = (*(f"border-{side}-{what}" for side in SIDES for what in ("width", "color")),
        "border-top-left-radius", "box-shadow", "text-overflow", "content")
ATTRIBUTES = ("aria-activedescendant aria-posinset aria-setsize placeholder title type min max inputmode list href "
              "datetime scope tabindex autocomplete spellcheck alt lang").split()
STATES = ("busy checked disabled expanded focused hasPopup invalid level live orientation pressed readonly required "
          "selected valuemax valuemin valuetext").split()
PLAIN = ("generic", "none", "StaticText", "InlineTextBox", "LabelText", "paragraph", "MenuListPopup")

INSIDE = pathlib.Path(__file__).with_name("inside.js").read_text()
SIZES = ("320x640", "480x640", "768x800", "1024x800", "1366x800", "1920x800")

# Of every text that can be seen: its contrast, and what is too small to read or hit.
LOOK = """
const luminance = (colour) => colour.slice(0, 3).map((c) => c / 255)
  .map((c) => c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4)
  .reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0);
const parse = (text) => {
  const numbers = text.match(/[\\d.]+/g).map(Number);
  if (text.startsWith('color(')) for (let i = 0; i < 3; ++i) numbers[i] *= 255;
  return numbers.length < 4 ? [...numbers, 1] : numbers;
};
const over = (top, under) => top.slice(0, 3).map((c, i) => c * top[3] + under[i] * (1 - top[3]));
const ground = (element) => {
  if (!element) return [255, 255, 255];
  const own = parse(getComputedStyle(element).backgroundColor);
  return own[3] === 1 ? own.slice(0, 3) : over(own, ground(element.parentElement));
};
const faults = [];
const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (walker.nextNode()) {
  const element = walker.currentNode.parentElement;
  const style = getComputedStyle(element);
  if (!walker.currentNode.data.trim() || !element.checkVisibility() || element.closest(':disabled, .hidden, .skip, #toast')) continue;
  const below = ground(element);
  const lights = [luminance(over(parse(style.color), below)), luminance(below)].sort();
  const contrast = (Math.max(...lights) + 0.05) / (Math.min(...lights) + 0.05);
  if (contrast < 4.5) faults.push(`${contrast.toFixed(2)}: ${walker.currentNode.data.trim().slice(0, 40)}`);
}
const { scrollWidth, scrollHeight } = document.scrollingElement;
if (scrollWidth > innerWidth || scrollHeight > innerHeight) faults.push(`${scrollWidth} x ${scrollHeight} px large`);
for (const each of document.querySelectorAll('button, input, select, textarea')) {
  const box = each.getBoundingClientRect();
  if (each.checkVisibility() && !each.closest('.skip, .scroller, nav') && (box.height < 24 || box.left < 0 || box.right > innerWidth + 0.5))
    faults.push(`out of reach: ${each.textContent || each.id}`);
}
return faults;
"""
FONTS = "return 'fonts ' + [...document.querySelectorAll('h1, kbd, footer span, #reset')].map((e) => e.offsetWidth).join(' ')"


def fill(sandbox, count):  # what is refused at once fills the list as well
    for _ in range(count):
        connection = HTTPConnection("127.0.0.1", sandbox.port)
        connection.request("GET", "/v1.0/check")
        connection.getresponse().read()


class Player:
    def __init__(self, browser, program, pictures):
        self.browser, self.program, self.pictures = browser, program, pictures
        self.sandbox, self.names, self.answers, self.before, self.has_places = None, {}, [], [], True
        pathlib.Path(pictures or ".").mkdir(exist_ok=True)
        self.cdp("Page.addScriptToEvaluateOnNewDocument", source=INSIDE)
        self.cdp("Emulation.setTimezoneOverride", timezoneId="Asia/Kolkata")

    def cdp(self, command, **parameters):
        given = {"sessionId": self.browser.session_id, "cmd": command, "params": parameters}
        answer = self.browser.command_executor.execute("executeCdpCommand", given)  # it is long: not searched for elements
        self.browser.error_handler.check_response(answer)
        return answer["value"]

    def masked(self, text):
        """With names for what differs from run to run, and of what is long the beginning."""
        text = re.sub("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f-]{21}",
                      lambda id: self.names.setdefault(id[0], f"(id {len(self.names) + 1})"), text)
        for pattern, name in ((f":{self.sandbox.port}\\b", ":(port)"), (f":{self.sandbox.page}\\b", ":(page's port)"),
                              (r"((?<=%20)|\b)[2-9A-HJ-NP-Z]{4}-[2-9A-HJ-NP-Z]{4}\b", "(code)"), (r"\b1[0-9]{9}(?=(000)?\b)", "(stamp)"),
                              (r"(?<=· )[\d.]+(?= ms)|\b(\d\.\d|\d{2,5})(?= ms)", "(n)"), (r'(?<="durationMs": )[0-9.e-]+', "(n)"),
                              (r"20\d\d-\d\d-\d\dT[0-9:]{8}(\.\d{3})?Z", "(time)"), ("\n", "⏎")):
            text = re.sub(pattern, name, text)
        text = re.sub("[A-Za-z0-9+/]{40,}", lambda word: f"({len(word[0])} letters)", text)
        digest = hashlib.sha256(text.encode()).hexdigest()[:8]
        return text if len(text) < 1200 else f"{text[:400]} ... {len(text)} characters, digest {digest}"

    @staticmethod
    def edge(styles):
        """What is drawn around a part."""
        borders = [f"{width} {colour}" for width, colour in zip(styles[:8:2], styles[1:8:2])]
        named = {"border": borders[0]} if len(set(borders)) == 1 else dict(zip(SIDES, borders))
        named.update(zip(("round", "shadow", "cut", "says"), styles[8:]))
        drawn = {name: what for name, what in named.items() if not re.match(r"0px|none|clip|normal|.*rgba\(0, 0, 0, 0\)", what)}
        return "".join(f"; {name} {what}" for name, what in drawn.items())

    def page(self):
        """A line for each part that is seen or heard, in the order of the document."""
        heard = {node.get("backendDOMNodeId"): node for node in self.cdp("Accessibility.getFullAXTree")["nodes"]
                 if not node["ignored"]}
        shot = self.cdp("DOMSnapshot.captureSnapshot", computedStyles=[*INK, *EDGE])
        texts, document = shot["strings"], shot["documents"][0]
        nodes, layout = document["nodes"], document["layout"]
        drawn = {n: (bounds, [texts[style] for style in styles])
                 for n, bounds, styles in zip(layout["nodeIndex"], layout["bounds"], layout["styles"])}
        lines, around = [], {}  # of each element: how deep it is, its place and ink, and what was said of it
        for n, parent in enumerate(nodes["parentIndex"]):
            depth, outer, ink, ground, said = around.get(parent, (0, (0, 0), [], "", ""))
            bounds, styles = drawn.get(n, (None, ink))
            edge = self.edge(styles[len(INK):]) if bounds and nodes["nodeType"][n] == 1 else ""
            styles = styles[:len(INK)]
            ground = styles[1] if styles and styles[1] != "rgba(0, 0, 0, 0)" else ground
            styles = styles and [styles[0], ground, *styles[2:]]
            around[n] = depth, outer, ink, ground, said
            node = heard.get(nodes["backendNodeId"][n], {})
            value = lambda what: str(node.get(what, {}).get("value", ""))  # noqa: E731
            text = texts[nodes["nodeValue"][n]].strip() if nodes["nodeType"][n] == 3 and bounds else ""
            is_plain = not text and value("role") in ("", *PLAIN)
            if text == said if text else is_plain and not edge and texts[nodes["nodeName"][n]] != "IMG":
                continue
            line = "  " * depth + (text or ("box" if is_plain else f"{value('role')} {value('name')!r}"))
            if not text and not is_plain:
                pairs = iter(texts[word] for word in nodes["attributes"][n])
                attributes = dict(zip(pairs, pairs))
                states = {each["name"]: each["value"].get("value") for each in node.get("properties", [])}
                told = {"value": value("value"), "description": value("description"),
                        **{name: states[name] for name in STATES if states.get(name) not in (None, False, "false", "")},
                        **{name: attributes[name] for name in ATTRIBUTES if name in attributes}}
                line += "".join(f" {name}={what}" for name, what in told.items() if what != "")
                around[n] = depth + 1, bounds or outer, styles, ground, value("name")
            masked = self.masked(line)
            if bounds and masked == line and not line.lstrip().startswith("status"):  # what is masked has no certain width
                x, y, *size = (round(a - b) for a, b in zip(bounds, (*outer[:2], 0, 0)))
                masked += f" @{x},{y}" + ("" if text else " {}x{}".format(*size))
            inks = [new for new, old in zip(styles, ink or [""] * len(INK)) if new != old] if bounds else []
            lines.append(masked + "".join(f"; {each}" for each in inks) + edge)
        return lines

    def told(self):
        """All that stands there, what of it the step brought, and what left the page."""
        now = self.page()
        changes = []
        for tag, a, b, c, d in difflib.SequenceMatcher(None, self.before, now, autojunk=False).get_opcodes():
            if tag != "equal":
                went = self.before[a:b] if b - a < 12 else [f"({b - a} lines)"]
                changes += [f"- {line}" for line in went] + [f"+ {line}" for line in now[c:d]]
        left = [*self.answers, *self.browser.execute_script("return window.told ?? []")]
        return now, changes + [f"! {self.masked(each)}" for each in left]

    def held(self, lines):
        """Where the fonts are not those of the approved text, places are others: what only moved has not changed."""
        if self.has_places:
            return lines
        plain = [re.sub(r" @-?\d+,-?\d+( \d+x\d+)?|^! fonts.*|^- \(\d+ lines\)", "", line) for line in lines]
        return [line for line in plain if line and {"-": "+", "+": "-"}.get(line[0], "!") + line[1:] not in plain]

    def play(self, step, approved, approving):
        """:return: what differs from the approved lines once the page is at rest, and all that came"""
        for id, name in self.names.items():
            step = step.replace(name, id)
        verb, _, rest = step.partition(" ")
        self.answers = []
        self.browser.execute_script("window.told = []")
        try:
            getattr(self, verb)(*([rest] if rest else []))
        except WebDriverException as error:  # nothing is there to be clicked
            self.answers.append((error.msg or "never so").splitlines()[0])
        if verb == "start":
            self.has_places = f"! {self.answers[0]}" in approved or approving
        self.answers += filter(None, [self.browser.execute_async_script("rest(20000).then(arguments[0])")])
        self.before, lines = self.told()
        return list(difflib.unified_diff(self.held(approved), self.held(lines), "approved", "now", "", "", 0, "")), lines

    def start(self, scenario):
        keys = {"client": "parloquin-demo", "secret": SECRET.hex()}
        if self.sandbox:
            self.stop()
        self.sandbox, self.before = Sandbox(self.program), []
        self.sandbox.ask("scenario", {"keys": keys, **json.loads(scenario)})
        self.open()
        self.see("1280x800 light")
        self.answers.append(self.browser.execute_script(FONTS))

    def end(self):
        self.browser.quit()
        self.stop()

    def stop(self):
        self.sandbox.close()

    def again(self):
        self.sandbox = Sandbox(self.program, "--port", str(self.sandbox.port), "--page", str(self.sandbox.page))

    def open(self, view=""):
        self.browser.get("about:blank")  # else it only moves within the page
        self.browser.get(f"http://127.0.0.1:{self.sandbox.page}/{view}")

    def see(self, rest):
        self.hover("h1")  # what the mouse is left on differs else
        size, scheme = rest.split()
        width, height = map(int, size.split("x"))
        self.cdp("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": scheme}, {"name": "prefers-reduced-motion", "value": "reduce"}])
        self.cdp("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=width < 600)

    def look(self, view):
        """At every width, in light and dark: tells what cannot be read or reached."""
        for size in SIZES:
            for scheme in ("light", "dark"):
                self.see(f"{size} {scheme}")
                self.answers += [f"{size} {scheme}: {fault}" for fault in self.browser.execute_script(LOOK)]
                if self.pictures:
                    self.browser.save_screenshot(f"{self.pictures}/{view}-{size}-{scheme}.png")
        self.see("1280x800 light")

    def hover(self, selector):
        ActionChains(self.browser, 0).move_to_element(self.browser.find_element("css selector", selector)).perform()

    def click(self, selector):
        self.browser.find_element("css selector", selector).click()

    def press(self, keys):
        for key in keys.split():
            ActionChains(self.browser).send_keys(getattr(Keys, key, key)).perform()

    def call(self, rest):
        name, parameters, in_seconds = re.fullmatch(r"(\S+) (\{.*\})( seconds)?", rest).groups()
        text = f"{int(time.time())}-{parameters}".encode()
        signature = base64.b64encode(hmac.new(SIGNING_KEY, text, hashlib.sha256).digest()).decode()
        with contextlib.suppress(ValueError, OSError, HTTPException):
            answer = self.sandbox.call(name, json.loads(parameters), signature if in_seconds else None)
            self.masked(json.dumps(answer))  # which names its ids

    def later(self, rest):
        before = self.revision()
        threading.Thread(target=self.call, args=(rest,)).start()
        while self.revision() == before:
            pass

    def revision(self):
        return self.sandbox.ask("journal?limit=1")["revision"]

    def raw(self, line):
        with socket.create_connection(("127.0.0.1", self.sandbox.port)) as client, contextlib.suppress(OSError):
            client.sendall(f"{line}\r\nHost: 127.0.0.1\r\n\r\n".encode())
            while client.recv(9999):
                pass

    def ask(self, rest):
        path, body = rest.split(" ", 1)
        self.masked(json.dumps(self.sandbox.ask(path, json.loads(body))))

    def get(self, path):
        self.answers.append(json.dumps(self.sandbox.ask(path), ensure_ascii=False))

    def many(self, count):
        fill(self.sandbox, int(count))

    def do(self, script):
        self.answers += filter(None, [self.browser.execute_script(script)])

    def until(self, script):
        WebDriverWait(self.browser, 20, 0.05).until(lambda _: self.browser.execute_script(f"return {script}"))
