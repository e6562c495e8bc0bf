import os

from hypothesis import HealthCheck, settings

settings.register_profile(
    "package", max_examples=int(os.environ.get("ZORVAN_IPP_EXAMPLES", "60")), deadline=None,
    suppress_health_check=list(HealthCheck), database=None, derandomize=False, print_blob=True)
settings.load_profile("package")
