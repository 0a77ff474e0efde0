"""The servers that the site is compared with: one worker each, no access log, a folder of files."""
import os
import subprocess

from processes import end, wait_for_port
from site_under_test import free_port, processor_seconds

NGINX = """{user}load_module /usr/lib/nginx/modules/ngx_http_image_filter_module.so;
daemon off;
worker_processes 1;
pid {folder}/nginx.pid;
error_log {folder}/nginx.log;
events {{ worker_connections 1024; }}
http {{
  access_log off;
  sendfile on;
  client_body_temp_path {folder}/body;
  proxy_temp_path {folder}/proxy;
  fastcgi_temp_path {folder}/fastcgi;
  uwsgi_temp_path {folder}/uwsgi;
  scgi_temp_path {folder}/scgi;
  image_filter_buffer 64M;
  server {{
    listen 127.0.0.1:{port} backlog=511;
    root {root};
    location ~ "^/resize/([0-9]+)/([0-9]+)/(.+)$" {{
      alias {photos}/$3;
      image_filter resize $1 -;
      image_filter_jpeg_quality $2;
    }}
  }}
}}
"""

LIGHTTPD = """server.modules = ()
server.document-root = "{root}"
server.bind = "127.0.0.1"
server.port = {port}
server.max-connections = 1024
server.max-fds = 2048
server.errorlog = "{folder}/lighttpd.log"
"""


class Peer:
    """A server in the foreground; `with` runs it."""

    def __init__(self, folder, root, configuration, command, photos=""):
        self.port = free_port()
        self.configuration = os.path.join(folder, command[0] + ".conf")
        self.command = [word.format(configuration=self.configuration, folder=folder) for word in command]
        # A worker of root's would change to a user who can't look into the temporary folder.
        user = "user root;\n" if os.geteuid() == 0 and command[0] == "nginx" else ""
        with open(self.configuration, "w") as file:
            file.write(configuration.format(user=user, folder=folder, root=root, port=self.port, photos=photos))
        self.process = None

    def __enter__(self):
        self.process = subprocess.Popen(self.command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        wait_for_port(self.port, self.process)
        return self

    def __exit__(self, *_):
        end(self.process)
        self.process.stderr.close()

    def processor_seconds(self):
        """Of the process that serves: nginx's worker is the child of the one that was started."""
        with open("/proc/%d/task/%d/children" % (self.process.pid, self.process.pid)) as file:
            children = [int(word) for word in file.read().split()]
        return sum(processor_seconds(pid) for pid in children or [self.process.pid])

    def address(self, target):
        return "http://127.0.0.1:%d/%s" % (self.port, target)


def nginx(folder, root, photos=""):
    return Peer(folder, root, NGINX, ["nginx", "-c", "{configuration}", "-p", "{folder}", "-e", "{folder}/nginx.log"],
                photos)


def lighttpd(folder, root):
    return Peer(folder, root, LIGHTTPD, ["lighttpd", "-D", "-f", "{configuration}"])
