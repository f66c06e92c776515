#!/usr/bin/python3
"""Holds the documents of the server's side. Clients: the back ends of docs/backend.md run against a
sandbox, and the test vectors are right. Description: what the kit sends and what the sandbox answers
fits the description of the calls.

Usage: documents.py SANDBOX KIT_CALLER FOLDER_OF_CLIENTS FOLDER_OF_DOCUMENTS Clients|Description
"""

import base64
import copy
import json
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

sys.path.append(str(pathlib.Path(__file__).parent.parent / "support"))
from sandbox import SECRET, Sandbox  # noqa: E402
import result as example  # noqa: E402

PROGRAM, CALLER, CLIENTS, DOCUMENTS = sys.argv[1:5]
NUMBER = {"phoneNumber": "+905321234567", "countryCode": "TR"}
SCHEMES = {f"{name}:\\/\\/": "0" for name in ("hushbell", "kite", "murmur", "parlo", "wrenly")}


def judged(messages):
    done = subprocess.run([pathlib.Path(__file__).with_name("judge.pl"), f"{DOCUMENTS}/service.openapi.yaml"], input=json.dumps(messages),
                          capture_output=True, text=True, timeout=60)
    if done.returncode:
        raise AssertionError(done.stderr)
    return json.loads(done.stdout)


def keys_of(value, path=""):
    """Each key in a value, by its place; places within a list are one."""
    if isinstance(value, list):
        return set().union(*(keys_of(item, path) for item in value)) if value else set()
    if not isinstance(value, dict):
        return set()
    return set().union(*({f"{path}/{key}"} | keys_of(item, f"{path}/{key}") for key, item in value.items()))


def described(document, schema, path=""):
    """The same of a schema, without what the sandbox never sends."""
    if "$ref" in schema:
        schema = document["components"]["schemas"][schema["$ref"].rsplit("/", 1)[1]]
    if "sends none" in schema.get("description", ""):
        return set()
    found = set()
    for key, value in schema.get("properties", {}).items():
        inside = described(document, value, f"{path}/{key}")
        if "sends none" not in value.get("description", ""):
            found |= {f"{path}/{key}"} | inside
    return found | (described(document, schema["items"], path) if "items" in schema else set())


def misspelt(value, path):
    """A copy in which the key at that place has another name."""
    changed = copy.deepcopy(value)
    *above, key = path.strip("/").split("/")
    places = [changed]
    for step in above:
        places = [each[step] for each in places if step in each]
        places = [item for each in places for item in (each if isinstance(each, list) else [each])]
    for place in places:
        if key in place:
            place[key + "x"] = place.pop(key)
    return changed


def run(*command, given=None):
    return subprocess.run(command, input=given, capture_output=True, timeout=30)


class Clients(unittest.TestCase):
    def test_say_who_is_verified(self):
        sandbox = Sandbox(PROGRAM)
        self.addCleanup(sandbox.close)
        verified, unknown, expired = (
            sandbox.ask("sessions", {"state": state})["sessionId"] for state in ("verified", "unknown", "expired"))
        unknown_said, right = 'refused: "session_id": unknown', SECRET.hex()
        for client, program in (("result.py", sys.executable), ("result.mjs", shutil.which("node") or "node")):
            self.assertLess(len(pathlib.Path(CLIENTS, client).read_text().splitlines()), 40, client)
            for session, secret, outcome, answer in (
                    (verified, right, None, "verified"),
                    (unknown, right, None, unknown_said),
                    (expired, right, None, 'refused: "session_id": too old'),
                    ("a/b\u00fc", right, None, unknown_said),  # a slash, and what is no ASCII
                    (verified, right.replace("8", "9"), None, ".*(does not decrypt|no JSON object).*"),
                    (verified, right, "noSessionId", "not verified"),
                    (verified, right, "noResult", "not verified")):
                sandbox.ask("outcomes", {"result": outcome})
                done = run(program, f"{CLIENTS}/{client}", f"http://127.0.0.1:{sandbox.port}", "parloquin-demo", secret, session)
                with self.subTest(client=client, outcome=outcome):
                    self.assertRegex((done.stdout + done.stderr).decode().strip(), f"(?s)^{answer}$")
                    self.assertEqual(done.returncode, "verified" not in answer)

    def test_have_right_vectors(self):
        vectors = json.loads(pathlib.Path(DOCUMENTS, "backend-vectors.json").read_text())
        for vector in vectors["requests"]:
            plain, body = vector["parameters"].encode(), vector["body"]["data"]
            text = f"{vector['timestamp']}-{vector['parameters']}".replace("\\/", "/")
            mac = base64.b64decode(vector["signature"])
            self.assertEqual(text, vector["signedText"])
            self.assertEqual(example.hmac.new(example.SIGNING_KEY, text.encode(), "sha256").digest(), mac)
            self.assertEqual(example.encrypt(plain, bytes.fromhex(vectors["secret"])), body)
            # Against another implementation of both.
            self.assertEqual(run("openssl", "dgst", "-sha256", "-mac", "HMAC", "-macopt", f"hexkey:{example.SIGNING_KEY.hex()}",
                                 "-binary", given=text.encode()).stdout, mac)
            self.assertEqual(run("openssl", "enc", "-d", "-aes-256-ecb", "-K", vectors["secret"],
                                 given=base64.b64decode(body)).stdout, plain)


class Description(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sandbox = Sandbox(PROGRAM)
        cls.addClassCleanup(cls.sandbox.close)
        reference = cls.sandbox.call("start", {"app": "parlo"})["result"]["reference"]
        cls.right = {
            "init": {"deviceName": "my phone", "timezone": "Europe/Istanbul", "countryCode": "TR"},
            "start": {"app": "parlo", "countryCode": "tr", "installedApps": json.dumps(SCHEMES, separators=(",", ":")).replace("\\\\", "\\")},
            "check": {"reference": reference}, "send-otp": NUMBER, "country": {},
            "result": {"session_id": cls.sandbox.ask("sessions", {})["sessionId"]},
        }

    def told(self):
        """The requests in the journal, as messages, and why the sandbox refused each."""
        messages, reasons = [], []
        for each in self.sandbox.ask("journal?limit=1000")["exchanges"]:
            request = each["request"]
            messages.append({
                "call": each["call"], "wire": json.loads(request["body"]), "plain": request["parameters"],
                "headers": {header["name"]: header["value"] for header in request["headers"]}})
            reasons.append(each["reason"] if each["verdict"] == "refused" else "")
        return messages, reasons

    def expect_right(self, messages):
        for message, faults in zip(messages, judged(messages)["faults"]):
            self.assertEqual(faults, [], message)

    def expect_every_key(self, messages, schemas):
        """Of the schemas, each key was seen; and misspelt, each is refused by name."""
        document = judged([])["document"]
        wrong = []
        for call, schema in schemas.items():
            mine = [each for each in messages if each["call"] == call]
            seen = set().union(*(keys_of(each["plain"]) for each in mine))
            wanted = described(document, {"$ref": f"/{schema}"})
            if schema.endswith("Answer"):
                wanted.remove("/meta/errorCode")  # of refusals alone
            self.assertEqual(wanted - seen, set(), f"{schema} describes what nobody sends")
            for key in wanted:
                message = next(each for each in mine if key in keys_of(each["plain"]))
                wrong.append((key, {**message, "plain": misspelt(message["plain"], key)}))
        for (key, message), faults in zip(wrong, judged([message for _, message in wrong])["faults"]):
            self.assertIn(key.rsplit("/", 1)[1], " ".join(faults), message)

    def test_is_itself_well_formed(self):
        self.assertEqual(judged([])["own"], [])

    def test_fits_what_the_kit_and_the_clients_send(self):
        self.sandbox.ask("journal", {})
        address = f"127.0.0.1:{self.sandbox.port}"
        subprocess.run([CALLER, address, "whole"], check=True, timeout=60, stdout=subprocess.DEVNULL)
        subprocess.run([sys.executable, f"{CLIENTS}/result.py", f"http://{address}", "parloquin-demo", SECRET.hex(),
                        self.right["result"]["session_id"]], check=True, timeout=60, stdout=subprocess.DEVNULL)
        messages, _ = self.told()
        self.assertEqual([each["call"] for each in messages],
                         ["init", "start", "check", "send-otp", "check-otp", "result", "country", "result"])
        self.assertEqual({each["call"] for each in messages}, set(self.sandbox.ask("requests")), "the sandbox's own")
        self.expect_right(messages)
        self.expect_every_key([{**each, "plain": {"countryCode": "TR", **each["plain"]}} if each["call"] in ("init", "country") else each
                               for each in messages],  # of a system without a region
                              {"init": "InitParameters", "start": "StartParameters", "check": "CheckParameters",
                               "send-otp": "SendOtpParameters", "check-otp": "CheckOtpParameters",
                               "result": "ResultParameters", "country": "CountryParameters"})

    def test_fits_every_answer_of_the_sandbox(self):
        ask, exchange = self.sandbox.ask, self.sandbox.exchange
        answers = []

        def play(call, parameters=None, **request):
            status, headers, wire, plain = exchange(call, self.right[call] if parameters is None else parameters, **request)
            answers.append({"call": call, "status": status, "headers": headers, "wire": wire, "plain": plain})
            return plain

        outcomes = [name for name in ask("outcomes/names")["outcomes"]
                    if name not in ("silence", "drip", "cut", "garbage")]
        outcomes += [{"status": status, "message": "why"} for status in (200, 201, 400, 403, 404, 429, 500)]
        outcomes += [{"status": 403, "errorCode": code} for code in ("403001", "403002", "403003", "403026")]
        outcomes += [{"plain": True}, {"like": "limit", "plain": True}]
        right = (*self.right, "check-otp")
        for call in right:
            for outcome in outcomes:
                ask("outcomes", {call: outcome})
                if call == "check-otp":
                    ask("outcomes", {"send-otp": None})
                    reference = play("send-otp")["result"]["reference"]
                    play(call, {"phoneNumber": "5321234567", "countryCode": "TR", "reference": reference,
                                "code": ask("codes/last")["code"]})
                else:
                    play(call)
            ask("outcomes", {call: None})
            play(call, {"odd": "key"})  # refused, sealed
            play(call, {}, headers={"X-TRZ-Encrypted": "0"})  # refused, in clear
            play(call, {}, signature="A" * 43 + "=")
        ask("messages", {"app": "parlo", "text": ask("messages")["messages"][0]["text"]})
        self.assertTrue(play("check", {"reference": ask("messages")["messages"][0]["reference"]})["result"]["sessionId"])
        self.expect_right(answers)
        self.assertEqual({True, False}, {"X-TRZ-Encrypted" in each["headers"] for each in answers})
        good = [each for each in answers if each["status"] < 400]
        self.expect_every_key(good, {"init": "InitAnswer", "start": "StartAnswer", "check": "CheckAnswer",
                                     "send-otp": "SendOtpAnswer", "check-otp": "CheckAnswer",
                                     "result": "CheckAnswer", "country": "CountryAnswer"})
        self.expect_every_key([each for each in answers if each["status"] >= 400], {call: "Refusal" for call in right})

    def test_refuses_what_the_sandbox_refuses(self):
        """By the same key, so that neither is laxer than the other."""
        right = {**self.right, "check-otp": {**NUMBER, "code": "123", "reference": "r"}}
        self.sandbox.ask("journal", {})
        for call, parameters in right.items():
            for key, value in parameters.items():
                for changed in (None, "", 7, True, [value], {"a": value}):
                    without = {name: text for name, text in parameters.items() if name != key}
                    self.sandbox.call(call, without if changed is None else {**without, key: changed})
            self.sandbox.call(call, {**parameters, "more": "x"})
            self.sandbox.call(call, parameters)
            if "countryCode" in parameters:
                self.sandbox.call(call, {**parameters, "countryCode": "TUR"})
        self.sandbox.call("init", {**right["init"], "timezone": "Europe Berlin"})
        messages, reasons = self.told()
        self.assertGreater(len(messages), 80)
        for message, reason, faults in zip(messages, reasons, judged(messages)["faults"]):
            form = re.match(r'"(\w+)": (missing|not a key|expected|empty)', reason)
            self.assertEqual(bool(form), bool(faults), (message["call"], message["plain"], reason, faults))
            if form:
                self.assertIn(form[1], " ".join(faults), message)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]], verbosity=2)
