"""Removing images: by exact ID, never by force, only when nothing uses them."""

from harness.docker_case import DockerCase


class ImageInUse(DockerCase):
    """An image that the scan found in use is refused before anything is asked of the engine."""

    def test_is_refused(self):
        image = self.engine.make_image("service:1")
        self.engine.run_container("job", image)
        self.start_over_engine()
        self.assertRegex(self.row("service:1"), ", In use$")
        self.request_image_removal("service:1")
        self.confirm("Remove Image")
        self.assert_result("Image Removal Failed", f"Image {image} is used by a container; it was not removed.",
                           outcome="ERRORS")
        self.assertEqual(self.engine.images(), {image})
        self.assertEqual(self.asked(), [])
        self.close()


class UnusedImageRemoval(DockerCase):
    """Exactly the image of the row goes, with a tag or without; its neighbours stay."""

    def setUp(self):
        super().setUp()
        self.kept = self.engine.make_image("kept:1")

    def remove(self, image, name):
        self.start_over_engine()
        self.assertRegex(self.row(name), f"^{image[7:19]}, [0-9.]+MB, Not used by a container$")
        message = self.request_image_removal(name)
        self.assertRegex(message, rf"^Remove {name} \({image[7:19]}, [0-9.]+MB\) from Docker connection 'DOCKER_HOST "
                                  r"override'\? Docker will receive the exact full image ID without force\. Images can "
                                  r"share layers, so the displayed virtual size is not guaranteed reclaimable space\.$")
        self.display.picture("confirmation-image")
        self.confirm("Remove Image")
        self.assert_result("Docker Image Removed", f"Removed Docker image {image}.", outcome="COMPLETE")
        self.assertEqual(self.engine.images(), {self.kept})
        self.assertEqual(self.asked(), [f"DELETE /images/{image}"])
        self.assertIsNone(self.screen.find("list item", name))
        self.assertIsNotNone(self.screen.find("list item", "kept:1"))
        self.close()

    def test_with_a_tag(self):
        self.remove(self.engine.make_image("service:1"), "service:1")

    def test_without_a_tag(self):
        self.remove(self.engine.make_image(), "Untagged image")


class ImageTakenAfterScan(DockerCase):
    """An image that a container took since the scan is refused by Docker, in Docker's own words."""

    def test_is_refused_by_the_engine(self):
        image = self.engine.make_image("service:1")
        self.start_over_engine()
        self.assertRegex(self.row("service:1"), ", Not used by a container$")
        self.request_image_removal("service:1")
        container = self.engine.start_container("late", image)
        before = self.engine.changes()
        self.confirm("Remove Image")
        self.assert_result(
            "Image Removal Failed",
            f"Docker refused to remove {image}: Error response from daemon: conflict: unable to delete {image[7:19]} "
            f"(cannot be forced) - image is being used by running container {container[:12]}", outcome="ERRORS")
        self.assertEqual(self.engine.images(), {image})
        self.assertEqual(self.engine.containers(), {"late": "running"})
        self.assertEqual(self.engine.changes()[len(before):], [f"DELETE /images/{image}"])
        self.assertRegex(self.row("service:1"), ", In use$", "the lists were made anew")
        self.close()
