#!/usr/bin/env python3
"""A site behind a home's router, in network namespaces of their own: router_test.py FOLDER_OF_THE_PROGRAMS

The home and the router each have a namespace of a user's own, so neither root nor a network is needed. The router is
played: NAT-PMP (RFC 6886) and UPnP's gateway device, as far as a mapping of a port needs them. Exit status 77: the system gives no
such namespaces."""
import os
import re
import socket
import struct
import subprocess
import sys
import threading
from http.server import BaseHTTPRequestHandler, HTTPServer
from pathlib import Path

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE + "/../support")
from site_under_test import Site

STORIES = {line.split("\t")[0]: line.replace("|", "\n").split("\t")[1:]
           for line in Path(HERE, "stories.tsv").read_text().splitlines()[1:]}
ROUTER, HOME = "192.168.77.1", "192.168.77.2"
SKIPPED = 77
SERVICE = "urn:schemas-upnp-org:service:WANIPConnection:1"
DEVICE = "urn:schemas-upnp-org:device:InternetGatewayDevice:1"
ENVELOPE = '<?xml version="1.0"?><s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>%s</s:Body></s:Envelope>'
FAULT = "<s:Fault><detail><UPnPError><errorCode>%d</errorCode></UPnPError></detail></s:Fault>"
RESPONSE = '<u:%sResponse xmlns:u="%s">%s</u:%sResponse>'
RESULTS = {"GetStatusInfo": "<NewConnectionStatus>Connected</NewConnectionStatus><NewLastConnectionError>ERROR_NONE"
                            "</NewLastConnectionError><NewUptime>9</NewUptime>",
           "GetExternalIPAddress": "<NewExternalIPAddress>{outer}</NewExternalIPAddress>"}


def run(*words):
    subprocess.run(words, check=True, stdout=subprocess.DEVNULL)


def tell(*words):
    print(*words, flush=True)


# The router.

def serve_nat_pmp(outer, allows):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as server:
        server.bind((ROUTER, 5351))
        while True:
            request, peer = server.recvfrom(64)
            if request[1] == 0:
                server.sendto(struct.pack("!BBHI4s", 0, 128, 0, 1, socket.inet_aton(outer)), peer)
                continue
            inner, wanted, lease = struct.unpack("!HHI", request[4:12])
            tell("nat-pmp", "open" if lease else "close", inner, lease)
            server.sendto(struct.pack("!BBHIHHI", 0, 128 + request[1], 0 if allows else 2, 1, inner, wanted, lease), peer)


def serve_discovery():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as server:
        server.bind(("", 1900))
        server.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP, socket.inet_aton("239.255.255.250") + socket.inet_aton(ROUTER))
        while True:
            request, peer = server.recvfrom(2048)
            if not request.startswith(b"M-SEARCH") or DEVICE.encode() not in request:
                continue
            answer = "HTTP/1.1 200 OK\r\nCACHE-CONTROL: max-age=120\r\nST: %s\r\nUSN: uuid:1::%s\r\nEXT:\r\nSERVER: played\r\n" \
                     "LOCATION: http://%s:5000/desc.xml\r\n\r\n" % (DEVICE, DEVICE, ROUTER)
            server.sendto(answer.encode(), peer)


def gateway(outer, allows):
    class Gateway(BaseHTTPRequestHandler):
        def log_message(self, *_):
            pass

        def answer(self, status, text):
            self.send_response(status)
            self.send_header("Content-Type", "text/xml")
            self.send_header("Content-Length", str(len(text)))
            self.end_headers()
            self.wfile.write(text.encode())

        def do_GET(self):
            self.answer(200, Path(HERE, "gateway.xml").read_text())

        def do_POST(self):
            action = self.headers["SOAPAction"].strip('"').split("#")[1]
            body = self.rfile.read(int(self.headers["Content-Length"])).decode()
            value = dict(re.findall("<(New[A-Za-z]*)>([^<]*)<", body))
            error = 0
            if action == "AddPortMapping":
                lease = value["NewLeaseDuration"]
                tell("upnp", "open", value["NewInternalPort"], lease, value["NewInternalClient"])
                error = 0 if allows == "yes" or lease == "0" else 725 if allows == "for ever" else 606
            elif action == "DeletePortMapping":
                tell("upnp", "close", value["NewExternalPort"])
            inner = FAULT % error if error else RESPONSE % (action, SERVICE, RESULTS.get(action, "").replace("{outer}", outer), action)
            self.answer(500 if error else 200, ENVELOPE % inner)
    return Gateway


def play_router(protocols, outer, allows):
    """In the router's namespace: waits for its cable, then serves until its standard input ends."""
    tell("ready")
    sys.stdin.readline()
    run("ip", "addr", "add", ROUTER + "/24", "dev", "inner")
    run("ip", "link", "set", "inner", "up")
    if "nat-pmp" in protocols:
        threading.Thread(target=serve_nat_pmp, args=(outer, allows == "yes"), daemon=True).start()
    if "upnp" in protocols:
        threading.Thread(target=serve_discovery, daemon=True).start()
        server = HTTPServer((ROUTER, 5000), gateway(outer, allows))
        threading.Thread(target=server.serve_forever, daemon=True).start()
    tell("serving")
    sys.stdin.read()


# The home.

class Router:
    def __init__(self, protocols, outer, allows):
        self.process = subprocess.Popen(["unshare", "--net", sys.executable, __file__, "--router", protocols, outer, allows],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.process.stdout.readline()
        run("ip", "link", "add", "home", "type", "veth", "peer", "name", "inner", "netns", str(self.process.pid))
        run("ip", "addr", "add", HOME + "/24", "dev", "home")
        run("ip", "link", "set", "home", "up")
        run("ip", "route", "add", "default", "via", ROUTER)
        self.process.stdin.write("\n")
        self.process.stdin.flush()
        self.process.stdout.readline()

    def end(self):
        """What it was asked, in order."""
        said = self.process.communicate()[0].splitlines()
        subprocess.run(["ip", "link", "del", "home"], stderr=subprocess.DEVNULL)  # most often it goes with its other end
        return said


def serve(protocols, outer, allows):
    """Starts and stops a site. Returns what the router was asked, the site's address, and what the owner was told."""
    router = Router(protocols, outer, allows)
    site = Site(sys.argv[1], settings={"PortMapping": "1"})
    try:
        os.mkdir(site.folder + "/pictures")
        site.add_album("A", site.folder + "/pictures")
        site.start()
        settings = Path(site.folder, "config/pixmora/settings.ini").read_text("utf-8")
        address = re.search(r"http://[^\"\s]*", settings).group(0)
        status = site.stop()
        texts = ["\n".join(router.end()), address, site.error_text() + ("" if status == 0 else "status %s" % status)]
        return [text.replace(str(site.port), "PORT") for text in texts]
    finally:
        site.close()


def tell_story(name):
    """Returns nothing when it goes as it should, else what was seen."""
    protocols, outer, allows, asked, address, told = STORIES[name]
    seen = serve(protocols, outer, allows)
    is_right = asked in ("?", seen[0]) and address == seen[1] and told in seen[2] and bool(told) == bool(seen[2])
    return None if is_right else "%s: %s" % (name, seen)


def main():
    if sys.argv[1] == "--router":
        return play_router(*sys.argv[2:])
    if len(sys.argv) == 3:  # one test, in a namespace of its own
        run("ip", "link", "set", "lo", "up")
        return sys.exit(tell_story(sys.argv[2]))
    namespaces = ["unshare", "--user", "--map-root-user", "--net"]
    if subprocess.run([*namespaces, "true"], stderr=subprocess.DEVNULL).returncode != 0:
        sys.exit(SKIPPED)
    running = [subprocess.Popen([*namespaces, sys.executable, __file__, sys.argv[1], story]) for story in STORIES]
    sys.exit(max(test.wait() for test in running))


if __name__ == "__main__":
    main()
