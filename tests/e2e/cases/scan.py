"""What a person meets who opens the program."""

import os
import re

import homes
from harness.case import Case
from harness.docker_case import TOOL_NOT_FOUND

# Where the program looks for it besides in the home.
_DOCKER_TOOLS = ("/usr/local/bin/docker", "/opt/homebrew/bin/docker",
                 "/Applications/Docker.app/Contents/Resources/bin/docker", "/usr/bin/docker")


class ScanOnStart(Case):
    """The panes show what the home holds, by roles, names and states, and nothing on the disk changes."""

    def setUp(self):
        super().setUp()
        self.cage.require_absent("ollama", "Ollama.app", "VendorApp.app", "Claude.app", "claude", "ChatGPT.app",
                                 "codex", "Gemini.app", "gemini", "LM Studio.app")
        self.install_tool("llm", "")
        homes.write(self.home / ".claude/settings.json", "{}")
        homes.ollama_model(self.home, "llama3", "latest", config=0, layers=(4_660_000_000,))
        homes.hub_model(self.home, "meta-llama", "Llama-3-8B", b"w" * 3_000_000)
        homes.gguf_model(self.home, "lmstudio-community/Foo/foo-Q4.gguf", b"g" * 2_000_000)
        homes.link(self.home / ".lmstudio/models/linked.gguf", "lmstudio-community/Foo/foo-Q4.gguf")

    def test_panes_show_what_is_there(self):
        before = self.disk()
        self.start()

        self.assert_applications({"Ollama": "Data remains", "VendorApp": "Not found", "Claude (desktop)": "Not found",
                                  "Claude Code (CLI)": "Data remains", "LLM CLI": "Installed"})
        # Only the rows near those in sight exist; the keyboard brings the others.
        self.display.key("End")
        self.assert_applications({"Gemini": "Not found", "Codex Tooling": "Not found", "LM Studio": "Data remains"})
        self.assertIsNotNone(self.screen.find("page tab", "Applications", states=["selected"]))
        self.display.picture("scan-applications")

        self.show_pane("models")
        models = {row.name: row.description for row in self.screen.wait("list", "Local models").children()
                  if row.role == "list item"}
        self.assertEqual(models, {"llama3:latest": "Ollama, 4.66 GB",
                                  "meta-llama/Llama-3-8B": "HuggingFace / vLLM, 3 MB",
                                  "lmstudio-community/Foo/foo-Q4.gguf": "LM Studio (GGUF), 2 MB"})
        self.display.picture("scan-models")

        self.show_pane("docker")
        self.expect_no_docker()
        self.display.picture("scan-docker")

        log = self.log()
        self.assertEqual(log[0], "Starting system scan for applications, models, and containers...")
        self.assertIn("Found software: LLM CLI (Terminal / CLI Tool)", log)
        self.assertIn("Found remaining configuration/data for Claude Code (CLI); no installation executable was "
                      "detected.", log)
        self.assertEqual(log[-1], "Scan completed: 4 applications, 3 models, 0 Docker containers, and 0 Docker "
                                  "images.")
        self.display.picture("scan-console")
        self.close()
        self.assert_only_gone(before, [])

    def expect_no_docker(self):
        tool = next(filter(os.path.exists, _DOCKER_TOOLS), None)
        if self.cage.hides_machine or tool is None:
            self.screen.wait(**TOOL_NOT_FOUND)
        else:
            # Then the tool's own words follow, which differ from version to version.
            self.screen.wait(name="Docker Daemon Unavailable",
                             description=re.compile("^Docker is installed, but its daemon is unavailable: "))

    def assert_applications(self, expected):
        for name, status in expected.items():
            row = self.application_row(name)
            self.assertIn(f". {status}. Not selected", row.description, name)
            self.assertNotIn("checked", row.states, name)
            self.assertEqual("enabled" in row.states, status != "Not found", name)


class ApplicationsScan(Case):
    """An application of the machine's is found where applications are."""

    def test_bundle_is_found(self):
        homes.app_bundle(self.cage.sample("/Applications"), "VendorApp")
        self.start()
        self.assertIn(". Installed. Not selected", self.application_row("VendorApp").description)
        self.assertIn("Found software: VendorApp (Desktop Application)", self.log())
        self.close()
