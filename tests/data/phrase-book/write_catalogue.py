#!/usr/bin/env python3
"""Lists the models of this folder in catalogue.json, with their sizes and hashes."""
import hashlib
import json
import pathlib

FOLDER = pathlib.Path(__file__).parent
NAMES = {"en": "英文", "ja": "日文", "ko": "韓文", "zh-Hant": "繁體中文"}


def download(role, name):
    data = (FOLDER / name).read_bytes()
    known = {"size": len(data), "sha256": hashlib.sha256(data).hexdigest()}
    # Nobody publishes these: they are installed from this folder.
    return {"url": f"https://demonstration.invalid/{name}", "compression": "none", **known,
            "files": [{"role": role, "name": name, **known}]}


def model(source, target, files):
    return {"id": f"{source}-{target}", "kind": "translation", "languages": [source, target],
            "title": f"示範：{NAMES[source]} → {NAMES[target]}（只認得幾百句常用語）",
            "licence": {"text": "示範用的小模型，只認得 Lumaphone 附的幾百句常用語，不能當作真正的翻譯。", "mustBeAccepted": False},
            "downloads": [download(role, name) for role, name in files]}


models = [model("en", "zh-Hant", [("model", "model.enzh.bin"), ("sourceVocabulary", "srcvocab.enzh.spm"),
                                  ("targetVocabulary", "trgvocab.enzh.spm")])]
models += [model(language, "en", [("model", f"model.{language}en.bin"), ("sourceVocabulary", f"vocab.{language}en.spm")])
           for language in ("ja", "ko")]
(FOLDER / "catalogue.json").write_text(json.dumps({"models": models}, ensure_ascii=False, indent=2) + "\n", encoding="utf-8")
