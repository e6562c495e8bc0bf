"""HTML that the cookbook and the gallery have in common."""

import html


def picture(caption, file, alt):
    return f'<figure><img src="{file}" alt="{html.escape(alt)}"><figcaption>{html.escape(caption)}</figcaption></figure>'


def page(title, introduction, links, body, style):
    """A page with a list of links and a body; `introduction`, `links` and `body` are HTML."""
    return ('<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n'
            f"<title>{title}: Zorvan.Ipp</title>\n"
            '<meta name="viewport" content="width=device-width, initial-scale=1">\n'
            f"<style>\n{style}</style>\n</head>\n<body>\n<main>\n<p class=\"name\">Zorvan.Ipp</p>\n<h1>{title}</h1>\n"
            f"<p>{introduction}</p>\n<ol class=\"contents\">{links}</ol>\n{body}\n</main>\n</body>\n</html>\n")
