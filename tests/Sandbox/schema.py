#!/usr/bin/python3
"""Holds the JSON schema of scenarios equal to what the sandbox takes.

Usage: schema.py SANDBOX
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest
import urllib.error

import jsonschema

sys.path.append(str(pathlib.Path(__file__).parent.parent / "support"))
from sandbox import Sandbox  # noqa: E402

PROGRAM = sys.argv.pop(1)
KEYS = {"secret": "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e", "client": "parloquin-demo"}
APP = {"app": "a", "name": "A"}
COUNTRY = {"countryCode": "TR", "title": "Turkey", "phoneCode": "+90"}
ODD = (None, 0, -1, 1.5, True, "", "x", [], {}, [1], {"x": 1})  # for any place: most of them are wrong there

# Below which key of a scenario; what stands there.
ROWS = {
    "$schema": ["scenario.schema.json", *ODD],
    "keys": [KEYS, {**KEYS, "secret": "8F" * 32}, {**KEYS, "secret": "8f" * 31}, {**KEYS, "secret": "8g" * 32},
             {**KEYS, "client": ""}, {**KEYS, "more": 1}, {"secret": KEYS["secret"]}, {"client": "c"}, *ODD],
    "clockToleranceSeconds": [1, 300, 86400, 86401, 5.0, 2**53, 1e300, *ODD],
    "messageExpirySeconds": [0, 86400, 86401, *ODD],
    "validation": ["accountkit", "otp", "call", "3rdparty", "whatsapp", "telegram", "viber", "OTP", *ODD],
    "alternative": ["otp", "sms", *ODD],
    "texts": [{"more": ""}, {"message": "your {code}"}, {"message": "{Code}"}, {"message": {"de": "{code}"}},
              {"message": {"de": "{code}", "fr": ""}}, *ODD, *({"message": odd} for odd in ODD),
              *({key: value} for key in ("description", "alternative", "recipient")
                for value in ("a", {"en": "a", "tr": ""}, {"en": "a", "tr": "b"}, {"en_GB": "a"}, {"E": "a"}, {"e": "a"},
                              {"abcdefghi": "a"}, {"en": 1}, *ODD))],
    "apps": [[APP], [{"app": "a"}], [{"name": "A"}], [{**APP, "more": 1}], [APP, {"app": "b", "name": "A"}], [APP, {}], *ODD,
             *([{**APP, "app": odd}] for odd in ODD), *([{**APP, "name": odd}] for odd in ODD),
             *([{**APP, "appPackage": value}] for value in ("a://", "a:", "://", *ODD)),
             *([{**APP, "text": value}] for value in ("a", {"de": "a"}, {"DE": "a"}, *ODD)),
             *([{**APP, "icon": value}] for value in ("/a.png", *ODD)),
             *([{**APP, key: value}] for key in ("bgColour", "textColour") for value in ("12abEF", "12abE", "12abEFG", "12abEg", *ODD))],
    "appPackageList": [["a://", "b"], ["a", 1], *ODD],
    "countries": [[COUNTRY], [{**COUNTRY, "more": 1}], *ODD, *([{**COUNTRY, key: odd}] for key in COUNTRY for odd in ODD),
                  *([{**COUNTRY, "phoneCode": value}] for value in ("+", "90", "+1")),
                  *([{name: text for name, text in COUNTRY.items() if name != key}] for key in COUNTRY)],
    "codes": [{"fixed": "123"}, {"fixed": "üöä"}, {"fixed": "12"}, {"fixed": "1234"}, {"more": 1}, {"expirySeconds": 86400},
              {"expirySeconds": 86401}, {"attempts": 1000}, {"attempts": 1001}, *ODD,
              *({key: odd} for key in ("fixed", "alphabet", "expirySeconds", "attempts") for odd in ODD)],
}
CALLS = ("init", "start", "check", "send-otp", "check-otp", "result", "country", "icon", "connection")
FAULTS = ["close@accept", "reset@request", "reset@request+3", "garbage@accept+5", "garbage@before+0", "stall@head+1", "drip@head",
          "drip@body+2", "cut@body+9", "half-close@after", "redirect:301:/", "length:none", "chunks:endless", "json:bom",
          "json:duplicate", "json:surrogate", "json:nul", "json:result.list[0].app=null", "clock:-5",
          # wrong ones
          "", "x", "reset", "reset@", "reset@x", "reset@body+", "reset@body+x", "reset@accept+1", "reset@after+1", "drip@accept",
          "drip@after", "drip@request", "cut@head", "cut@accept", "status:99", "status:600", "status:", "status:2x0",
          "redirect:309:/", "redirect:301:", "redirect:301: x", "length:0", "length:+0", "length:+x", "chunks:x", "gzip:0",
          "gzip:x", "cookie:", "cookie:x", "body:", "body:-1", "key:right", "key", "blocks:x", "padding:good", "flag:x",
          "json:", "json:depth:0", "json:depth:x", "json:x", "json:=1", "clock:", "clock:x", "silence@body", " reset@body"]

# The sandbox refuses these; a schema cannot, or would be no help to read.
BEYOND = [{"apps": [APP, APP]}, {"outcomes": {"check": {"fault": "json:a=b"}}}, {"outcomes": {"check": {"fault": "json:a[=1"}}},
          {"outcomes": {"check": {"fault": "gzip:999999999999"}}}, {"outcomes": {"check": {"fault": "body:999999999999"}}},
          {"outcomes": {"check": {"fault": "json:depth:10000001"}}}, {"outcomes": {"check": {"fault": "clock:999999999999"}}}]


def ask(*words):
    return subprocess.run([PROGRAM, *words], capture_output=True, text=True, timeout=20)


class Schema(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.schema = json.loads(ask("--print-schema").stdout)
        cls.validator = jsonschema.Draft7Validator(cls.schema)
        cls.sandbox = Sandbox(PROGRAM)
        cls.addClassCleanup(cls.sandbox.close)

    def taken(self, scenario):
        """As --check has it, without a process for each."""
        try:
            self.sandbox.ask("scenario/check", scenario)
        except urllib.error.HTTPError as error:
            error.close()
            return False
        return True

    def checked(self, scenario):
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            json.dump(scenario, file)
            file.flush()
            return ask("--check", file.name).returncode == 0

    def hold(self, scenarios):
        counts = {True: 0, False: 0}
        for scenario in scenarios:
            fits = self.validator.is_valid(scenario)
            counts[fits] += 1
            if self.taken(scenario) != fits:
                self.fail(f"{scenario}: the schema says {[each.message for each in self.validator.iter_errors(scenario)]}")
        self.assertGreater(min(counts.values()), 20, counts)

    def test_is_a_schema_and_fits_the_built_in_scenario(self):
        jsonschema.Draft7Validator.check_schema(self.schema)
        built_in = json.loads(ask("--print-scenario").stdout)
        self.validator.validate(built_in)
        self.assertTrue(self.checked({"$schema": "a.json", **built_in}))

    def test_takes_and_refuses_the_same_fields(self):
        self.hold([{"keys": KEYS, key: value} for key, values in ROWS.items() for value in values]
                  + [{}, {"keys": KEYS}, {"keys": KEYS, "more": 1}, {"codes": {}}, [], None, "x"])

    def test_takes_and_refuses_the_same_outcomes(self):
        names = self.schema["definitions"]["outcomeName"]["enum"]
        objects = [{"like": name} for name in (*names, "x", 1)]
        objects += [{key: odd} for key in ("like", "status", "errorCode", "message", "without", "delayMs", "plain", "fault", "x") for odd in ODD]
        objects += [{"status": status} for status in (200, 201, 202, 400, 403, 404, 429, 500, "200")]
        objects += [{"errorCode": code} for code in ("403001", "403002", "403003", "403026", "403004", 403001)]
        objects += [{"delayMs": 600000}, {"delayMs": 600001}, {"without": ["a", 1]}, {"plain": True, "fault": "key:wrong"},
                    {"plain": True, "fault": "flag:off"}, {"plain": True, "fault": "flag:on"}, {"plain": False, "fault": "padding:bad"}]
        values = [*names, "x", *ODD, *objects, ["success", None], ["limit", {"delayMs": 3}]]
        self.hold([{"keys": KEYS, "outcomes": odd} for odd in ODD]
                  + [{"keys": KEYS, "outcomes": {call: value}} for call in ("check", "icon", "connection") for value in values]
                  + [{"keys": KEYS, "outcomes": {call: "success"}} for call in (*CALLS, "checkOTP")]
                  + [{"keys": KEYS, "outcomes": {kind: value}} for kind in ("numbers", "clients")
                     for value in (*ODD, {"+905": {}}, {"905": {}}, {"+": {}}, *({"+905": odd} for odd in ODD),
                                   *({"+905": {call: "limit"}} for call in CALLS), {"+905": {"check": []}}, {"+905": {"check": None}})])

    def test_takes_and_refuses_the_same_faults(self):
        short = self.schema["definitions"]["fault"]["anyOf"][0]["enum"]
        names = self.sandbox.ask("outcomes/names")
        self.assertEqual(set(names["outcomes"]), set(self.schema["definitions"]["outcomeName"]["enum"]))
        faults = [*short, *FAULTS, *names["faults"]]
        self.hold([{"keys": KEYS, "outcomes": {call: [{"fault": fault}]}} for call in ("check", "icon", "connection") for fault in faults]
                  + [{"keys": KEYS, "outcomes": {"clients": {"c": {"check": {"fault": fault}}}}} for fault in faults])

    def test_says_where_it_is_laxer(self):
        for scenario in BEYOND:
            self.assertTrue(self.validator.is_valid({"keys": KEYS, **scenario}), scenario)
            self.assertFalse(self.checked({"keys": KEYS, **scenario}), scenario)


if __name__ == "__main__":
    unittest.main(argv=sys.argv, verbosity=2)
