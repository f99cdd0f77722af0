// SPDX-License-Identifier: MIT
import { Trouble } from './trouble.ts';

/** More bytes than any scene that a browser could show. */
const kMostBytes = 1 << 30;

export function fromBase64(text: string): Uint8Array {
  try {
    const binary = atob(text.trim());
    const bytes = new Uint8Array(binary.length);
    for (let i = 0; i < bytes.length; i++) bytes[i] = binary.charCodeAt(i);
    return bytes;
  } catch {
    throw new Trouble('broken', 'base64');
  }
}

/** Unpacks gzip; bytes that are not packed are returned as they are. */
export async function unpacked(bytes: Uint8Array, most = kMostBytes): Promise<Uint8Array> {
  if (bytes[0] !== 0x1f || bytes[1] !== 0x8b) return bytes;
  if (typeof DecompressionStream === 'undefined') throw new Trouble('noUnpacking');
  const reader = new Blob([bytes as BlobPart]).stream().pipeThrough(new DecompressionStream('gzip')).getReader();
  const parts: Uint8Array[] = [];
  let size = 0;
  try {
    for (;;) {
      const { done, value } = await reader.read();
      if (done) break;
      parts.push(value);
      size += value.length;
      if (size > most) break;
    }
  } catch {
    throw new Trouble('broken', 'gzip');
  }
  if (size > most) {
    void reader.cancel();
    throw new Trouble('broken', 'size');
  }
  const result = new Uint8Array(size);
  let at = 0;
  for (const part of parts) {
    result.set(part, at);
    at += part.length;
  }
  return result;
}

/** The scene of a page in two files that was opened without a server: a script that hands it over. */
function fromScript(): Promise<Uint8Array> {
  return new Promise((resolve, reject) => {
    const script = document.createElement('script');
    const scope = window as unknown as { orbivueScene?: (text: string) => void };
    scope.orbivueScene = (text) => {
      try {
        resolve(fromBase64(text));
      } catch (trouble) {
        reject(trouble);
      }
    };
    // Where the scene was handed over before, this no longer matters.
    script.onload = script.onerror = () => reject(new Trouble('noScene'));
    script.src = 'scene.bin.js';
    document.head.append(script);
  });
}

async function fromServer(): Promise<Uint8Array> {
  try {
    const response = await fetch('scene.bin');
    if (response.ok) return new Uint8Array(await response.arrayBuffer());
  } catch {
    // A server that is gone and one that has no such file are the same to a reader.
  }
  throw new Trouble('noScene');
}

/** The bytes of the page's scene, a glTF binary: out of the page, or from the file beside it. */
export async function sceneBytes(): Promise<Uint8Array> {
  const inside = document.getElementById('scene');
  if (inside) return unpacked(fromBase64(inside.textContent ?? ''));
  return unpacked(await (location.protocol === 'file:' ? fromScript() : fromServer()));
}
