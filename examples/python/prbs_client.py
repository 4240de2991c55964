#!/usr/bin/env python3
"""The client side of the example PRBS capture exchange, in Python: builds a start-capture request,
wraps it in an eHal::EMessage, sends it to the port of examples/tcp_exchange.cpp over loopback TCP
and prints the decoded reply. Each envelope travels as one frame: its length as 4 bytes, most
significant first, then its archive bytes.

    prbs_client.py PORT     (the ehal module on PYTHONPATH; exit status 0 when the port agrees)
"""

import socket
import sys

import ehal

PRBS = "eHal::EPRBS"
PRBS_START_CAPTURE = 3
SUCCESS = 0
# Envelope message types of the exchange.
REQUEST, REPLY = 1, 2
CLIENT = ("example-client", 1)
PORT_ID = 7


def receive_exactly(connection, length):
    data = b""
    while len(data) < length:
        chunk = connection.recv(length - len(data))
        if not chunk:
            raise ConnectionError("the port closed the connection")
        data += chunk
    return data


def exchange(connection, request):
    """Sends the request record in an envelope; returns the unwrapped reply envelope."""
    frame = ehal.envelope(ehal.encode(PRBS, request), REQUEST, CLIENT, PORT_ID)
    print(f"client: sends {len(frame)} bytes: {frame!r}")
    connection.sendall(len(frame).to_bytes(4, "big") + frame)
    length = int.from_bytes(receive_exactly(connection, 4), "big")
    reply = receive_exactly(connection, length)
    print(f"client: receives {len(reply)} bytes: {reply!r}")
    return ehal.unwrap(reply, PRBS)


def main(port):
    # Line by line, so that the client's lines and the port's interleave in the order they happen.
    sys.stdout.reconfigure(line_buffering=True)
    request = {"ClientMessageId": 1, "RequestType": PRBS_START_CAPTURE}
    print(f"client: request {request}")
    with socket.create_connection(("127.0.0.1", port), timeout=10) as connection:
        reply = exchange(connection, request)
    print(f"client: envelope type {reply['type']}, client {reply['client']}, port {reply['port']}")
    print(f"client: reply {reply['payload']}")
    record = reply["payload"]
    ok = (reply["type"] == REPLY and record["RequestType"] == PRBS_START_CAPTURE
          and record["ReturnCode"] == SUCCESS and record["ClientMessageId"] == 1)
    print("client: exchange ok" if ok else "client: exchange FAILED")
    return 0 if ok else 1


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(int(sys.argv[1])))
