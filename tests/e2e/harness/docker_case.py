"""What every case with Docker begins with."""

from . import docker_engine
from .case import Case
from .docker_engine import CLIENT, HOST, SOCKET_FOLDER, DockerEngine


# What the pane shows instead of its lists.
TOOL_NOT_FOUND = {"name": "Docker CLI Not Found",
                  "description": "Docker CLI is not installed or is not available in PATH."}


def no_daemon(connection, host):
    """The same for a connection that does not answer."""
    return {"name": "Docker Daemon Unavailable",
            "description": "Docker is installed, but its daemon is unavailable: Docker CLI is installed, but connection "
                           f"'{connection}' is unavailable. Start Docker Desktop (or restore that connection), then "
                           f"choose Scan System. {unreachable(host)}"}


def unreachable(host):
    """The tool's own words."""
    return f"Cannot connect to the Docker daemon at {host}. Is the docker daemon running?"


class DockerCase(Case):
    """A private engine, reached in the cage at `HOST`, and Debian's client at its place."""

    def setUp(self):
        super().setUp()
        reason = docker_engine.obstacle()
        if reason:
            self.skipTest(reason)
        if not self.cage.hides_machine:
            self.skipTest("a Docker Engine of the machine may be found, which only namespaces can hide")
        self.engine = DockerEngine()
        self.addCleanup(self.engine.remove)
        self.cage.bind(self.engine.socket_folder, SOCKET_FOLDER)

    def bind_client(self):
        self.cage.bind(CLIENT, CLIENT)

    def start_over_engine(self, **environment):
        """With the client, over the engine unless the environment says otherwise; shows the pane."""
        self.bind_client()
        self.start(environment={"DOCKER_HOST": HOST, **environment})
        self.show_pane("docker")
        # From here on the engine's log holds the program's requests and the case's own.
        self.asked_before = self.engine.changes()

    def asked(self):
        """The changes that were asked of the engine since the first scan."""
        return self.engine.changes()[len(self.asked_before):]

    def row(self, name):
        """The description of a row: what stands under its name."""
        return self.screen.wait("list item", name).description

    def request_container_removal(self, name):
        self.press(f"Delete {name}")
        modal = self.dialog("Delete Container?")
        self.assertEqual(modal.description, f"Permanently delete container {name}? It will be stopped first if it is "
                                            "running.")

    def request_image_removal(self, name):
        """Returns the message of the modal."""
        self.press(f"Remove {name}")
        return self.dialog("Remove Docker Image?").description

    def assert_result(self, title, *lines, outcome):
        """The result modal with its badge and message; dismisses it."""
        self.result(title)
        self.assertIsNotNone(self.screen.find(name=outcome), f"the badge {outcome}\n{self.screen.describe()}")
        self.assertEqual(self.result_lines(), list(lines))
        self.dismiss_result()
