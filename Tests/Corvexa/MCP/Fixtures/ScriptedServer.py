"""A tool server whose tools misbehave, each in the way that its name tells. The first argument is where it notes what it
reads; the second how it begins."""

import json
import os
import subprocess
import sys

late_ids = []


def send(text):
    sys.stdout.write(text)
    sys.stdout.flush()


def line(**members):
    return json.dumps({"jsonrpc": "2.0", **members}) + "\n"


def texts(*parts, **more):
    return {"content": [{"type": "text", "text": part} for part in parts], **more}


def flood():
    while True:
        send("x" * 65536)


def call(request, name, arguments):
    answers = {
        "echo": texts(json.dumps(arguments)),
        "argv": texts(json.dumps(sys.argv[3:])),
        "env": texts(os.environ.get(str(arguments.get("name")), "(not set)")),
        "pid": texts(str(os.getpid())),
        "two": {"content": [{"type": "Text", "text": "first"}, {"type": "image", "data": "AA=="}, 7,
                            {"type": "text", "text": "second"}]},
        "fails": texts("it went wrong", isError=True),
        "nothing": {},
        "words": "just words",
        "void": None,
    }
    answer = line(id=request, result=answers.get(name))
    if name == "late":
        late_ids.append(request)
    elif name.startswith("garbage"):
        send("no json\n" * int(name[7:]) + line(id=request, result=texts("after garbage")))
    elif name == "chatter":
        send(line(method="notifications/message", params={}) + line(id=request, method="roots/list") +
             line(id=request + 1000, result="not this") + line(id=str(request), result="nor this") + "\n  \r\n" +
             line(id=request, result=texts("this")))
    elif name == "leftover":
        send(line(id=request, result=texts("ok")) + "xyz")
    elif name == "refused":
        send(line(id=request, error={"code": -1, "message": "no such tool"}))
    elif name == "grumbles":
        send(line(id=request, error={}))
    elif name == "empty":
        send(line(id=request))
    elif name == "last_words":
        send(line(id=request, result=texts("goodbye")))
        os._exit(0)
    elif name == "crash":
        os._exit(3)
    elif name == "flood":
        flood()
    elif name == "child":
        child = subprocess.Popen(["sleep", "300"])
        send(line(id=request, result=texts(str(child.pid))))
    elif name != "silent":
        send(answer)


def answer(message, beginning):
    request, method = message.get("id"), message["method"]
    while late_ids:
        send(line(id=late_ids.pop(), result=texts("too late")))
    if method == "initialize" and beginning != "mute":
        send(line(id=request, result={"protocolVersion": "1999-01-01"}))
    elif method == "tools/list":
        send(line(id=request, result=None if beginning == "listless" else {"tools": [
            {"name": "echo", "description": "Says it again.", "inputSchema": {"type": "object"}},
            {"name": "crash"}, {"name": "pid"}, {"name": ""}, {"description": "no name"}, 5]}))
    elif method == "tools/call":
        call(request, message["params"]["name"], message["params"]["arguments"])


def main():
    notes, beginning = sys.argv[1:3]
    if beginning == "ends":
        return
    # More than a pipe holds: whoever doesn't read it would hold the server up.
    sys.stderr.write("noise on the error stream\n" * 10000)
    send("server 1.0 is ready\n")
    for text in iter(sys.stdin.readline, ""):
        with open(notes, "a", encoding="utf-8") as file:
            file.write(text)
        if text.strip():
            answer(json.loads(text), beginning)


main()
