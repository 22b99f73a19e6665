"""Which cage is to be had here."""

import os

from . import bubblewrap_cage, landlock_cage

# In the order in which they are preferred, by the names that force one.
_FORMS = {"namespaces": (bubblewrap_cage.obstacle, bubblewrap_cage.BubblewrapCage),
          "landlock": (landlock_cage.obstacle, landlock_cage.LandlockCage)}

_form = None


def obstacle():
    """Chooses the form for all cages of this process; why there is none, or nothing."""
    global _form
    forced = os.environ.get("ZENTRILL_CONFINEMENT")
    reasons = []
    for name, (reason_against, form) in _FORMS.items():
        if forced in (None, "", name):
            reason = reason_against()
            if reason is None:
                _form = form
                return None
            reasons.append(reason)
    return "no cage for the program can be made here: " + ("; ".join(reasons) or f"ZENTRILL_CONFINEMENT={forced}")


def make_cage():
    return _form()
